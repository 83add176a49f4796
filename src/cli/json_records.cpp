#include "cli/json_records.h"

#include "core/domain/json_coding.h"
#include "core/domain/path_text.h"

#include <string>
#include <utility>

namespace kestavon {

namespace {

std::string_view nameOf(ScanPhase::Kind kind)
{
    switch (kind) {
    case ScanPhase::Kind::scanning: return "scanning";
    case ScanPhase::Kind::partial: return "partial";
    case ScanPhase::Kind::failed: return "failed";
    case ScanPhase::Kind::idle: return "idle";
    case ScanPhase::Kind::finished: break;
    }
    return "finished";
}

void date(JsonWriter& json, std::string_view name, Timestamp moment)
{
    json.member(name, dateToText(moment));
}

template <class List, class Write> void list(JsonWriter& json, const List& items, Write write)
{
    json.beginList();
    for (const auto& item : items) {
        json.beginObject();
        write(item);
        json.endObject();
    }
    json.endList();
}

void members(JsonWriter& json, const FileRecord& record)
{
    json.member("id", record.id.text());
    json.path("path", record.path);
    json.member("size", record.size);
    if (record.modifiedAt)
        date(json, "modifiedAt", *record.modifiedAt);
    json.member("isDirectory", record.isDirectory);
    json.member("isHidden", record.isHidden);
}

void members(JsonWriter& json, const CleanupCandidate& candidate)
{
    json.member("id", candidate.id.text());
    json.key("record");
    json.beginObject();
    members(json, candidate.record);
    json.endObject();
    json.member("reason", candidate.reason);
    json.member("estimatedBytes", candidate.estimatedBytes);
}

/// Writes the records of one list. There may be millions, most of them in the folder of the one
/// before and with names that are plain text: those are put together from what is ready.
class RecordWriter {
public:
    RecordWriter(JsonWriter& json, const RecordList& records)
        : m_json(json)
        , m_records(records)
    {
    }

    void write(std::size_t position)
    {
        enterFolder(m_records.folderOf(position));
        const auto name = m_records.name(position);
        const bool isPlain
            = m_folderIsText && !(m_records.flags(position) & RecordFlags::nonAsciiName);
        if (!isPlain) {
            m_json.beginObject();
            members(m_json, m_records[position]);
            m_json.endObject();
            return;
        }
        m_text.assign("{\"id\":\"").append(m_records.id(position).text()).append("\",\"path\":\"");
        m_text.append(m_folder);
        appendJsonText(m_text, name);
        m_text.append("\",\"size\":").append(std::to_string(m_records.fileSize(position)));
        if (const auto modified = m_records.modifiedAt(position))
            m_text.append(",\"modifiedAt\":\"").append(dateToText(*modified)).append("\"");
        m_text.append(",\"isDirectory\":").append(boolText(m_records.isDirectory(position)));
        m_text.append(",\"isHidden\":").append(boolText(m_records.isHidden(position)));
        m_text += '}';
        m_json.raw(m_text);
    }

private:
    static std::string_view boolText(bool flag) { return flag ? "true" : "false"; }

    void enterFolder(std::uint32_t folder)
    {
        if (m_hasFolder && folder == m_folderNumber)
            return;
        m_hasFolder = true;
        m_folderNumber = folder;
        auto path = m_records.folderPath(folder);
        if (!path.ends_with('/'))
            path += '/';
        m_folderIsText = pathToText(path) == path;
        m_folder.clear();
        appendJsonText(m_folder, path);
    }

    JsonWriter& m_json;
    const RecordList& m_records;
    bool m_hasFolder = false;
    std::uint32_t m_folderNumber = 0;
    bool m_folderIsText = false;
    std::string m_folder; ///< its path as JSON, with a slash at the end
    std::string m_text;
};

} // namespace

void writeJson(JsonWriter& json, const RecordList& records)
{
    RecordWriter writer(json, records);
    json.beginList();
    for (std::size_t i = 0; i < records.size(); ++i)
        writer.write(i);
    json.endList();
}

void writeJson(
    JsonWriter& json, const RecordList& records, std::span<const std::uint32_t> positions)
{
    RecordWriter writer(json, records);
    json.beginList();
    for (const auto position : positions)
        writer.write(position);
    json.endList();
}

void writeJson(JsonWriter& json, const CandidateList& candidates)
{
    json.beginList();
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        json.beginObject();
        members(json, candidates[i]);
        json.endObject();
    }
    json.endList();
}

void writeJson(JsonWriter& json, const DuplicateList& duplicates)
{
    json.beginList();
    for (std::size_t i = 0; i < duplicates.size(); ++i) {
        const auto group = duplicates[i];
        json.beginObject();
        json.member("id", group.id.text());
        json.member("hash", group.hash);
        json.key("files");
        list(json, group.files, [&](const FileRecord& file) { members(json, file); });
        json.endObject();
    }
    json.endList();
}

void writeJson(JsonWriter& json, const std::vector<JunkGroup>& groups)
{
    list(json, groups, [&](const JunkGroup& group) {
        json.member("id", group.id.text());
        json.member("category", rawValue(group.category));
        json.key("items");
        list(json, group.items, [&](const CleanupCandidate& item) { members(json, item); });
        json.member("isScanning", group.isScanning);
        json.member("isScanned", group.isScanned);
    });
}

void writeJson(JsonWriter& json, const std::vector<InstalledApp>& apps)
{
    list(json, apps, [&](const InstalledApp& app) {
        json.member("id", app.id.text());
        json.member("name", app.name);
        if (app.bundleID)
            json.member("bundleID", *app.bundleID);
        json.path("appURL", app.appURL);
        json.key("leftovers");
        list(json, app.leftovers, [&](const LeftoverFile& leftover) {
            json.member("id", leftover.id.text());
            json.path("url", leftover.url);
            json.member("size", leftover.size);
            json.member("kind", rawValue(leftover.kind));
        });
    });
}

void writeJson(JsonWriter& json, const std::vector<StartupItem>& items)
{
    list(json, items, [&](const StartupItem& item) {
        json.member("id", item.id.text());
        json.member("label", item.label);
        json.path("programPath", item.programPath);
        json.path("plistURL", item.plistURL);
        json.member("isSystem", item.isSystem);
    });
}

void writeJson(JsonWriter& json, const std::vector<SecurityFinding>& findings)
{
    list(json, findings, [&](const SecurityFinding& finding) {
        json.member("id", finding.id.text());
        json.path("path", finding.path);
        json.member("level", rawValue(finding.level));
        json.member("reason", finding.reason);
    });
}

void writeJson(JsonWriter& json, const std::vector<AppProcessInfo>& processes)
{
    list(json, processes, [&](const AppProcessInfo& process) {
        json.member("processIdentifier", process.processIdentifier);
        json.member("processName", process.processName);
        if (process.bundleIdentifier)
            json.member("bundleIdentifier", *process.bundleIdentifier);
        json.member("memoryBytes", process.memoryBytes);
        json.member("isSystemProcess", process.isSystemProcess);
        if (process.icon)
            json.path("icon", *process.icon);
    });
}

void writeJson(JsonWriter& json, const std::vector<QuarantineItem>& items)
{
    list(json, items, [&](const QuarantineItem& item) {
        json.member("id", item.id.text());
        json.path("originalPath", item.originalPath);
        json.path("quarantinedPath", item.quarantinedPath);
        json.member("reason", item.reason);
        date(json, "date", item.date);
    });
}

void writeJson(JsonWriter& json, const std::vector<ActivityEvent>& events)
{
    list(json, events, [&](const ActivityEvent& event) {
        json.member("id", event.id.text());
        date(json, "date", event.date);
        json.member("title", event.title);
        json.path("detail", event.detail);
    });
}

void writeJson(JsonWriter& json, const StorageSummary& summary)
{
    json.beginObject();
    json.member("count", summary.count);
    json.member("bytes", summary.bytes);
    json.member("hiddenBytes", summary.hiddenBytes);
    json.endObject();
}

void writeJson(JsonWriter& json, const std::optional<MemorySnapshot>& memory)
{
    if (!memory)
        return json.null();
    json.beginObject();
    json.member("freeBytes", memory->freeBytes);
    json.member("activeBytes", memory->activeBytes);
    json.member("inactiveBytes", memory->inactiveBytes);
    json.member("wiredBytes", memory->wiredBytes);
    json.endObject();
}

void writePhase(JsonWriter& json, std::string_view name, const ScanPhase& phase)
{
    json.member(name, nameOf(phase.kind()));
    if (!phase.text().empty())
        json.member(std::string(name) + "Text", phase.text());
}

} // namespace kestavon
