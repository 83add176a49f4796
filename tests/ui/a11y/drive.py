"""Uses the real window as somebody with a screen reader does: drive.py PROGRAM

Looks at every section, scans a small home, filters and selects in the table of files, finds duplicates and reviews
junk; then, on a Mac's disk, removes an application, a startup item and a finding of the security review. Needs an X display and a session bus (the script "run" beside this one starts both).
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from window import Listener, application, eventually, press_key, type_text

SECTIONS = ["Dashboard", "Storage", "Large Files", "Duplicates", "Smart Clean", "Cleaner", "App Uninstaller",
            "Safe Area", "Performance", "Processes", "Startup Items", "Security", "History", "Settings"]
FILES = {  # path below the home, size in bytes
    "Videos/Trip to the lake.mov": 5_000_000,
    "Videos/birthday.mov": 3_000_000,
    "Documents/plan (copy).pdf": 1_000_000,  # all files of a size have the same content
    "Documents/trip plan.pdf": 1_000_000,
    "Documents/Ünïcödé & more.txt": 40_000,
    ".hidden": 1_000,
    "Downloads/old installer.iso": 2_000_000,
}
DAY = 24 * 60 * 60


def make_home(home):
    for path, size in FILES.items():
        file = home / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(b"k" * size)
    os.utime(home / "Downloads/old installer.iso", (time.time() - 200 * DAY,) * 2)


def make_mac_disk(home):
    def write(path, text):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def plist(key, value):
        return f'<plist version="1.0"><dict><key>{key}</key><string>{value}</string></dict></plist>'

    disk = home.parent.parent
    (disk / "System/Library").mkdir(parents=True)
    (home / "Library/Mail").mkdir(parents=True)
    for name in ["Editor", "Viewer"]:
        write(disk / f"Applications/{name}.app/Contents/Info.plist", plist("CFBundleIdentifier", f"org.example.{name}"))
    write(home / "Library/Caches/Editor", "k" * 3000)
    for name in ["one", "two"]:
        write(home / f"Library/LaunchAgents/{name}.plist", plist("Label", f"org.example.{name}"))
    write(disk / "Library/LaunchDaemons/three.plist", plist("Label", "org.example.three"))


def contents(home):
    return {path: path.lstat().st_size for path in home.rglob("*") if not path.is_dir()}


class Session:
    def __init__(self, program, folder, home="home", make=make_home):
        self.home = folder / home
        self.home.mkdir(parents=True)
        make(self.home)
        places = {f"XDG_{kind}_HOME": str(folder / "xdg" / kind) for kind in ("CONFIG", "DATA", "CACHE", "STATE")}
        runtime = folder / "runtime"
        runtime.mkdir(mode=0o700)
        self.process = subprocess.Popen([program, "--theme", "light"], env=os.environ | places | {
            "HOME": str(self.home), "XDG_RUNTIME_DIR": str(runtime), "TZ": "UTC", "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})

    def open(self):
        self.window = application("kestavon")
        self.find("frame", "Kestavon")

    def find(self, role, name):
        return eventually(lambda: self.window.all(role, lambda n: n == name), f'{role} "{name}"')[0]

    def shows(self, text):
        """Waits until some element says the text."""
        return eventually(lambda: next((e for e in self.window.below()
                                        if text in e.name and e.has("showing")), None), f'"{text}"')

    def hides(self, text):
        eventually(lambda: not [e for e in self.window.below() if text in e.name and e.has("showing")],
                   f'"{text}" to go')

    def sidebar(self):
        """The sections' rows by title; a badge joins the row's name."""
        rows = {}
        for row in self.window.all("list item"):
            title = next((s for s in SECTIONS if row.name == s or row.name.startswith(s + ",")), None)
            if title:
                rows[title] = row
        return rows

    def go_to(self, section):
        self.sidebar()[section].press()
        eventually(lambda: self.sidebar()[section].has("selected"), f"{section} to be selected")

    def table(self):
        """The visible rows of the files' table from top to bottom, each a list of its cells' texts."""
        rows = sorted(self.find("table", "Files").all("table row"), key=lambda row: row.place()[1])
        return [[cell.name for cell in sorted(row.all("table cell"), key=lambda cell: cell.place()[0])]
                for row in rows]

    def row(self, name):
        return self.find("table", "Files").all("table row", lambda n: n == name)[0]


def names(paths):
    return [path.rpartition("/")[2] for path in paths]


LARGEST_FIRST = names(sorted(FILES, key=FILES.get, reverse=True))


def asks_for_no_access(session):
    # Whoever can list the home needs no permission of another system.
    session.shows("Ready to scan")
    assert not session.window.all("dialog"), "a question nobody asked for"


def opens_every_section(session):
    eventually(lambda: list(session.sidebar()) == SECTIONS, "the sections in their order")
    for section in SECTIONS:
        session.go_to(section)
        selected = [title for title, row in session.sidebar().items() if row.has("selected")]
        assert selected == [section], f"{selected} selected after pressing {section}"


def scans_and_counts(session):
    session.go_to("Storage")
    session.shows("No scan data yet")
    session.go_to("Dashboard")
    session.find("push button", "Scan").press()
    count = sum(1 for _ in session.home.rglob("*"))
    session.shows(f"Scan complete — {count} files")
    session.shows(f"Items Scanned: {count}")
    session.shows("Hidden Files: 1 KB")
    eventually(lambda: session.sidebar()["Cleaner"].name != "Cleaner", "the old download in the Cleaner's badge")


def lists_largest_first(session):
    session.go_to("Storage")
    eventually(lambda: len(session.table()) >= len(FILES), "the table to fill")
    rows = session.table()
    assert [row[0] for row in rows][:len(FILES)] == LARGEST_FIRST, rows
    name, size, _, path = rows[0]
    assert (size, path) == ("5 MB", str(session.home / "Videos" / name)), rows[0]
    session.go_to("Large Files")
    eventually(lambda: [row[0] for row in session.table()] == LARGEST_FIRST, "files and no folders")


def counts_only_what_is_shown(session):
    session.go_to("Storage")
    eventually(lambda: session.table(), "the table to fill")
    session.row("Trip to the lake.mov").click()
    session.shows("1 selected · 5 MB")
    session.row("birthday.mov").click("ctrl")
    session.shows("2 selected · 8 MB")
    assert session.row("birthday.mov").has("selected")
    assert not session.row("trip plan.pdf").has("selected")

    session.find("text", "Filter").click()
    type_text("TRIP")
    eventually(lambda: [row[0] for row in session.table()] == ["Trip to the lake.mov", "trip plan.pdf"],
               "the filter, whatever the case")
    session.shows("1 selected · 5 MB")
    press_key("Escape")
    session.shows("2 selected · 8 MB")
    session.find("tool bar", "Selection").all("push button", lambda name: name == "Clear")[0].press()
    session.hides("selected ·")


def tells_what_the_arrows_reach(session):
    session.go_to("Storage")
    eventually(lambda: session.table(), "the table to fill")
    names = [row[0] for row in session.table()]
    session.row(names[0]).click()
    listener = Listener()
    for name in names[1:3]:
        press_key("Down")
        listener.hears(name)
    press_key("Escape")
    session.sidebar()["Dashboard"].click()
    press_key("Down")
    listener.hears("Storage")
    listener.close()


def finds_duplicates_and_asks(session):
    session.go_to("Duplicates")
    session.find("push button", "Analyze Duplicates").press()
    session.shows("1 groups · 1 MB reclaimable")
    eventually(lambda: session.sidebar()["Duplicates"].name == "Duplicates, 1", "the group in the badge")
    rows = [row.name for row in sorted(session.find("list", "Duplicate groups").all("list item"),
                                       key=lambda row: row.place()[1])]
    documents = session.home / "Documents"
    assert rows[0] == "plan (copy).pdf, 2 copies, Save 1 MB", rows
    assert rows[1].startswith(f"plan (copy).pdf, {documents}/plan (copy).pdf, "), rows
    assert rows[2].startswith(f"trip plan.pdf, {documents}/trip plan.pdf, "), rows
    assert [row.endswith(", Kept") for row in rows].count(True) == 1, rows

    session.find("push button", "Merge & Trash").press()
    session.find("dialog", "Merge 1 duplicate groups?").all("push button", lambda name: name == "Cancel")[0].press()
    session.hides("Merge 1 duplicate groups?")
    session.shows("1 groups · 1 MB reclaimable")


def reviews_junk(session):
    thrown_away = session.home.parent / "xdg/DATA/Trash/files/old notes.txt"
    thrown_away.parent.mkdir(parents=True)
    thrown_away.write_bytes(bytes(3000))
    session.go_to("Smart Clean")
    session.shows("Scan to discover hidden space hogs")
    session.find("push button", "Scan All").press()
    card = session.find("panel", "Trash") # what else is found is the machine's
    eventually(lambda: card.all("push button", lambda name: name == "Review & Clean"), "the Trash to be searched")
    card.all("push button", lambda name: name == "Review & Clean")[0].press()
    sheet = session.find("dialog", "Trash")
    items = eventually(lambda: sheet.all("list item"), "the items of the category")
    assert [item.name.split(", ")[0] for item in items] == ["old notes.txt"], [item.name for item in items]
    sheet.all("check box", lambda name: name == "0 of 1")[0].press()
    eventually(lambda: sheet.all("check box", lambda name: name == "1 of 1"), "the tick to count")
    session.shows("1 selected")
    sheet.all("push button", lambda name: name == "Close")[0].press()
    session.hides("1 selected")


def press_in(place, button):
    place.all("push button", lambda name: name == button)[0].press()


def wait_out_a_double_click():
    time.sleep(0.7)


def uninstalls_an_application(session):
    session.go_to("App Uninstaller")
    session.find("push button", "Scan Installed Apps").press()
    session.shows("2 apps · 3 KB in leftover files")
    row = session.find("list item", "Editor, org.example.Editor, 3 KB, 1 files")
    press_in(row, "1 files")
    session.find("list item", f"Cache, {session.home}/Library/Caches/Editor, 3 KB")
    wait_out_a_double_click()
    press_in(row, "Uninstall All")
    press_in(session.find("dialog", 'Uninstall "Editor"?'), "Move App + All Leftovers to Trash")
    session.shows("1 apps · Zero KB in leftover files")
    eventually(lambda: session.sidebar()["App Uninstaller"].name == "App Uninstaller", "the badge to go")
    assert (session.home / ".Trash/Editor.app/Contents/Info.plist").exists()
    assert (session.home / ".Trash/Editor").exists()


def removes_a_startup_item(session):
    session.go_to("Startup Items")
    session.find("push button", "Scan Startup Items").press()
    session.find("heading", "Your Launch Agents, Installed by you or third-party apps — safe to remove")
    session.find("list item", "org.example.three, Protected")
    row = session.find("list item", "org.example.one")
    wait_out_a_double_click()
    press_in(row, "Remove")
    eventually(lambda: (session.home / ".Trash/one.plist").exists(), "the file to move")


def reviews_security(session):
    session.go_to("Dashboard")
    session.find("push button", "Scan").press()
    session.shows("Scan complete")
    session.go_to("Security")
    session.find("push button", "Run Security Scan").press()
    session.shows("No confirmed threats")
    file = session.home / "Library/LaunchAgents/two.plist"
    row = session.find("list item", f"Unknown, Persistence location — review recommended, {file}")
    wait_out_a_double_click()
    press_in(row, "Remove")
    press_in(session.find("dialog", 'Remove "two.plist"?'), "Move to Trash")
    eventually(lambda: not file.exists(), "the file to move")
    session.shows("No threats found")


STEPS = [asks_for_no_access, opens_every_section, scans_and_counts, lists_largest_first, counts_only_what_is_shown,
         tells_what_the_arrows_reach, finds_duplicates_and_asks, reviews_junk]
STEPS_ON_A_MAC_DISK = [uninstalls_an_application, removes_a_startup_item, reviews_security]


def run(start, steps, changes_files):
    with tempfile.TemporaryDirectory(prefix="kestavon-a11y-") as folder:
        session = start(pathlib.Path(folder))
        before = contents(session.home)
        try:
            session.open()
            for step in steps:
                step(session)
                print("ok", step.__name__.replace("_", " "))
            assert changes_files or contents(session.home) == before, "looking at the home changed it"
            assert session.process.poll() is None, "the program has ended"
        except AssertionError as failure:
            if hasattr(session, "window"):
                print("\n".join(session.window.tree()))
            sys.exit(f"FAILED: {failure}")
        finally:
            session.process.terminate()
            session.process.wait(10)


def main(program):
    run(lambda folder: Session(program, folder), STEPS, changes_files=False)
    run(lambda folder: Session(program, folder, "disk/Users/alice", make_mac_disk), STEPS_ON_A_MAC_DISK,
        changes_files=True)


if __name__ == "__main__":
    main(sys.argv[1])
