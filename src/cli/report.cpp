#include "cli/report.h"

#include "cli/json_records.h"
#include "cli/printable.h"
#include "core/model/record_queries.h"
#include "platform/byte_count.h"

#include <iomanip>

namespace kestavon {

namespace {

constexpr std::size_t largeFiles = 100;

template <class Value> void writeMember(JsonWriter& json, std::string_view name, const Value& value)
{
    json.key(name);
    writeJson(json, value);
}

std::vector<QuarantineItem> heldItems(const AppModel& model)
{
    auto items = model.quarantine();
    const auto& earlier = model.earlierQuarantine();
    items.insert(items.end(), earlier.begin(), earlier.end());
    return items;
}

void writeField(JsonWriter& json, const AppModel& model, DocumentField field)
{
    switch (field) {
    case DocumentField::selectedRoot: json.path("selectedRoot", model.selectedRoot()); break;
    case DocumentField::scanPhase:
        writePhase(json, "scanPhase", model.scanPhase());
        if (!model.scanNotice().empty())
            json.member("scanNotice", model.scanNotice());
        break;
    case DocumentField::duplicatePhase:
        writePhase(json, "duplicatePhase", model.duplicatePhase());
        break;
    case DocumentField::securityPhase:
        writePhase(json, "securityPhase", model.securityPhase());
        break;
    case DocumentField::storageSummary:
        writeMember(json, "storageSummary", model.storageSummary());
        break;
    case DocumentField::diskSpace:
        json.member("diskTotal", model.diskTotal());
        json.member("diskFree", model.diskFree());
        break;
    case DocumentField::memory: writeMember(json, "memory", model.memory()); break;
    case DocumentField::history: writeMember(json, "history", model.history()); break;
    case DocumentField::quarantine: writeMember(json, "quarantine", heldItems(model)); break;
    case DocumentField::junkGroups: writeMember(json, "junkGroups", model.junkGroups()); break;
    case DocumentField::duplicates: writeMember(json, "duplicates", *model.duplicates()); break;
    case DocumentField::cleanupCandidates:
        writeMember(json, "cleanupCandidates", *model.cleanupCandidates());
        break;
    case DocumentField::installedApps:
        writeMember(json, "installedApps", model.installedApps());
        break;
    case DocumentField::startupItems:
        writeMember(json, "startupItems", model.startupItems());
        break;
    case DocumentField::findings: writeMember(json, "findings", model.findings()); break;
    case DocumentField::processes: writeMember(json, "processes", model.processes()); break;
    case DocumentField::records: writeMember(json, "records", *model.records()); break;
    case DocumentField::largestRecords:
        json.key("records");
        writeJson(json, *model.records(), largestRecords(model));
        break;
    }
}

} // namespace

void printDocument(
    const AppModel& model, std::initializer_list<DocumentField> fields, std::ostream& out)
{
    JsonWriter json(out);
    json.beginObject();
    for (const auto field : fields)
        writeField(json, model, field);
    json.endObject();
    json.finish();
}

void printFileRow(std::ostream& out, std::int64_t bytes, std::string_view path)
{
    out << std::setw(10) << fileByteCount(bytes) << "  " << printablePath(path) << '\n';
}

void printNullEnded(std::ostream& out, std::string_view path)
{
    out.write(path.data(), static_cast<std::streamsize>(path.size()));
    out.put('\0');
}

std::vector<std::uint32_t> largestRecords(const AppModel& model)
{
    return largestFiles(*model.records(), largeFiles);
}

void forEachSpareCopy(
    const DuplicateList& duplicates, const std::function<void(std::uint32_t)>& visit)
{
    for (std::size_t group = 0; group < duplicates.size(); ++group) {
        const auto members = duplicates.members(group);
        for (std::size_t i = 0; i < members.size(); ++i) {
            if (i != duplicates.keptMember(group))
                visit(members[i].position);
        }
    }
}

} // namespace kestavon
