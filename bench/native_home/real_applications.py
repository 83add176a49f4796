#!/usr/bin/env python3
"""Tries Smart Clean on what real applications leave in a home.

    real_applications.py PROBE MANIFEST_TOOL [PACKAGE...]

Needs Debian, root, Xvfb, dbus-run-session and the network. Installs the packages that are missing,
starts each of them once for an ordinary user whose home is empty, and then looks:

  1. that nothing of an installed application is taken for an orphan, however old it is;
  2. that "Clean All" followed by a restore of everything changes no byte of the home;
  3. that after "Clean All" every application starts and keeps its settings;
  4. how much of what they left is found once they are removed (`apt-get remove`, settings kept).

PROBE is the program kestavon_probe, MANIFEST_TOOL a program that writes down every byte, mode and
date of a tree as JSON (`snap PATH -o FILE`). Prints figures; status 0 when 1 to 3 hold. Packages
that it installed are removed in step 4, the others stay unless --remove is given.
"""
import argparse
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PACKAGES = {  # package: the program that is started
    "mousepad": "mousepad", "galculator": "galculator", "l3afpad": "l3afpad", "geany": "geany",
    "pcmanfm": "pcmanfm", "zathura": "zathura", "feh": "feh /usr/share/pixmaps", "mpv": "mpv --player-operation-mode=pseudo-gui",
    "audacious": "audacious", "keepassxc": "keepassxc", "transmission-gtk": "transmission-gtk",
    "pidgin": "pidgin", "filezilla": "filezilla", "firefox-esr": "firefox-esr",
    "qbittorrent": "qbittorrent", "epiphany-browser": "epiphany",
}
# What this user's session itself makes, whatever is started.
SESSION = {"dconf", "pulse", "gtk-3.0", "gtk-2.0", "user-dirs.dirs", "user-dirs.locale", "ibus", "fontconfig",
           "mesa_shader_cache", "recently-used.xbel", "applications", "Trash", "Kestavon", "mimeapps.list", "icc",
           "gvfs-metadata", "glib-2.0", "icons", "keyrings", "QtProject.conf", "gstreamer-1.0"}
USER = 65534  # nobody
BASES = (".config", ".local/share", ".local/state")
OLD = time.time() - 400 * 86400


def as_user(command, home, **options):
    environment = {"HOME": str(home), "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "USER": "nobody",
                   "XDG_RUNTIME_DIR": str(home.parent / "runtime"), "QT_QPA_PLATFORM": "xcb"}
    return subprocess.Popen(["setpriv", f"--reuid={USER}", f"--regid={USER}", "--clear-groups", "--", *command],
                            env=environment, cwd=home, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            start_new_session=True, **options)


def fields(probe, home, *arguments):
    process = as_user([str(probe), *arguments], home)
    output = process.communicate()[0].decode(errors="surrogateescape")
    if process.returncode != 0:
        sys.exit(f"the probe failed: {arguments}")
    return output.split("\0")[:-1]


def start(program, home, seconds):
    """Whether the program was still alive, or had ended well, after this time."""
    # Half-way its windows are closed as a person closes them, so that it saves what it saves then.
    closing = f"(sleep {seconds / 2}; xdotool search --onlyvisible --name . windowquit %@) >/dev/null 2>&1 &"
    process = as_user(["xvfb-run", "-a", "dbus-run-session", "--", "sh", "-c", closing + program], home)
    try:
        well = process.wait(timeout=seconds) == 0
    except subprocess.TimeoutExpired:
        well = True
    for ending in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(process.pid, ending)
        except ProcessLookupError:
            break
        time.sleep(1.5)
    process.wait()
    return well


def age(home):
    for folder, folders, files in os.walk(home, topdown=False):
        for name in files + folders:
            os.utime(os.path.join(folder, name), (OLD, OLD), follow_symlinks=False)


def holds_bytes(path):
    files = [path] if path.is_file() else (file for file in path.rglob("*") if file.is_file())
    return any(file.stat().st_size for file in files)


def entries(home):
    found = set()
    for base in BASES:
        folder = home / base
        if folder.is_dir():
            found |= {f"{base}/{name}" for name in os.listdir(folder)
                      if name not in SESSION and holds_bytes(folder / name)}
    return found


def orphans(probe, home):
    found = fields(probe, home, "junk", "--", "orphanedApps")
    return {os.path.relpath(path, home) for path in found[2::3]}


def manifest(tool, home):
    with tempfile.NamedTemporaryFile() as file:
        subprocess.run([tool, "snap", str(home), "-o", file.name], check=True)
        tree = json.load(open(file.name))
    tree = tree.get("entries", tree)
    own = ".local/share/Kestavon"
    kept = {}
    for name, facts in tree.items():
        if name == own or name.startswith(own + "/"):
            continue
        # A folder out of which things went and came back has another date.
        kept[name] = {key: value for key, value in facts.items() if key != "mtime" or facts.get("type") != "d"}
    return kept


def settings(home):
    """The bytes of the files of settings."""
    found = {}
    for base in (".config", ".local/share", ".mozilla", ".purple"):
        for file in (home / base).rglob("*"):
            if file.is_file() and not file.is_symlink() and "Kestavon" not in file.parts:
                found[str(file.relative_to(home))] = file.read_bytes()
    return found


def start_again(options, packages, homes, probe):
    """The third step; what failed."""
    for name in ("cleaned", "control"):
        subprocess.run(["cp", "-a", f"{homes['first']}/.", str(homes[name])], check=True)
    failures = []
    fields(probe, homes["cleaned"], "clean-all")
    base = settings(homes["first"])
    started = 0
    for package, program in packages.items():
        if not program:
            continue
        started += 1
        for name in ("control", "cleaned"):
            if not start(program, homes[name], options.seconds):
                failures.append(f"does not start in the {name} home: {package}")
    now, control = settings(homes["cleaned"]), settings(homes["control"])
    lost = sorted(name for name in base if name in control and name not in now)
    other = sorted(name for name in base if name in now and now[name] != base[name] and control.get(name) == base[name])
    print(f"3. {started} applications started again; of {len(base)} files of settings and data {len(lost)} are missing "
          f"and {len(other)} differ that do not without cleaning")
    for name in lost + other:
        print("     ", name)
    return failures


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("probe", type=pathlib.Path)
    parser.add_argument("manifest_tool")
    parser.add_argument("packages", nargs="*")
    parser.add_argument("--seconds", type=float, default=8, help="how long each program runs")
    parser.add_argument("--keep-installed", action="store_true", help="leave out the last step")
    parser.add_argument("--quick", action="store_true", help="leave out the third step")
    options = parser.parse_args()
    packages = {name: PACKAGES.get(name, name) for name in options.packages or PACKAGES}
    subprocess.run(["apt-get", "install", "-qq", "-y", "--no-install-recommends", *packages], check=True,
                   stdout=subprocess.DEVNULL, env={**os.environ, "DEBIAN_FRONTEND": "noninteractive"})

    root = pathlib.Path(tempfile.mkdtemp(prefix="kestavon-real-"))
    root.chmod(0o755)
    homes = {name: root / name / "home" for name in ("first", "cleaned", "control")}
    first = homes["first"]
    for name in homes:
        for folder in ("home", "runtime"):
            (root / name / folder).mkdir(parents=True, mode=0o700)
            os.chown(root / name / folder, USER, USER)
    probe = root / "kestavon_probe"
    shutil.copy(options.probe, probe)
    probe.chmod(0o755)

    failures = []
    for package, program in packages.items():
        if not start(program, first, options.seconds):
            print(f"{package} does not start here and is left out of step 3")
            packages[package] = None
    age(first)

    made = entries(first)
    wrong = orphans(probe, first)
    print(f"1. {len(made)} entries of {len(packages)} installed applications, {len(wrong)} taken for orphans")
    failures += [f"taken for an orphan: {name}" for name in sorted(wrong)]

    before = manifest(options.manifest_tool, first)
    cleaned = fields(probe, first, "clean-all")[1::3]
    left = manifest(options.manifest_tool, first)
    fields(probe, first, "restore-held")
    after = manifest(options.manifest_tool, first)
    changed = sorted(name for name in before.keys() | after.keys() if before.get(name) != after.get(name))
    print(f"2. {len(cleaned)} items cleaned, {len(before) - len(left)} of {len(before)} entries gone; "
          f"{len(changed)} differ after a restore")
    for path in sorted(cleaned):
        print("     ", os.path.relpath(path, first))
    failures += [f"not restored: {name}" for name in changed]

    if not options.quick:
        failures += start_again(options, packages, homes, probe)

    if not options.keep_installed:
        age(first)
        listed = fields(probe, first, "apps")
        owned = {os.path.relpath(path, first) for path in listed[2::3]}
        print(f"4. while installed, {len(made & owned)} of {len(made)} entries are listed with an application")
        for name in sorted(made - owned):
            print("      with none:", name)
        subprocess.run(["apt-get", "remove", "-qq", "-y", *packages], check=True, stdout=subprocess.DEVNULL)
        found = orphans(probe, first)
        print(f"   when removed, {len(made & found)} of {len(made)} are found as orphans")
        for name in sorted(made - found):
            print("      not found:", name)
        failures += [f"taken for an orphan, and the session's: {name}" for name in sorted(found - made)]
    for failure in failures:
        print("FAILED", failure)
    shutil.rmtree(root)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
