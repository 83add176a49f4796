#include "core/domain/activity_event.h"
#include "core/domain/cleanup_candidate.h"
#include "core/domain/duplicate_group.h"
#include "core/domain/installed_app.h"
#include "core/domain/quarantine_item.h"
#include "core/domain/security_finding.h"
#include "support/moments.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

/// Every variant differs from `original` in one field: all must be unequal to it, and their hashes
/// must tell them apart.
template <class Record>
void expectEveryFieldToCount(
    const Record& original, const std::vector<std::function<void(Record&)>>& changes)
{
    const auto copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(std::hash<Record>{}(copy), std::hash<Record>{}(original));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        auto changed = original;
        changes[i](changed);
        EXPECT_NE(changed, original) << "change " << i;
        EXPECT_NE(std::hash<Record>{}(changed), std::hash<Record>{}(original)) << "change " << i;
    }
}

FileRecord someRecord()
{
    return {.id = Uuid::random(),
        .path = "/home/alice/a",
        .size = 12,
        .modifiedAt = test::utc(2026, 11, 16)};
}

TEST(Records, AreEqualOnlyWhenEveryFieldIs)
{
    expectEveryFieldToCount<FileRecord>(someRecord(),
        {
            [](auto& record) { record.id = Uuid::random(); },
            [](auto& record) { record.path += '/'; },
            [](auto& record) { record.size = 13; },
            [](auto& record) { record.modifiedAt.reset(); },
            [](auto& record) { *record.modifiedAt += std::chrono::nanoseconds(1); },
            [](auto& record) { record.isDirectory = true; },
            [](auto& record) { record.isHidden = true; },
        });
    expectEveryFieldToCount<CleanupCandidate>(
        {Uuid::random(), someRecord(), "Application cache", 1},
        {
            [](auto& candidate) { candidate.id = Uuid::random(); },
            [](auto& candidate) { candidate.record.isHidden = true; },
            [](auto& candidate) { candidate.reason = "Old download"; },
            [](auto& candidate) { candidate.estimatedBytes = 2; },
        });
    expectEveryFieldToCount<DuplicateGroup>({Uuid::random(), "00", {someRecord(), someRecord()}},
        {
            [](auto& group) { group.id = Uuid::random(); },
            [](auto& group) { group.hash = "01"; },
            [](auto& group) { group.files.pop_back(); },
            [](auto& group) { std::swap(group.files[0], group.files[1]); },
        });
    expectEveryFieldToCount<SecurityFinding>({Uuid::random(), "/a", ThreatLevel::unknown, "why"},
        {
            [](auto& finding) { finding.id = Uuid::random(); },
            [](auto& finding) { finding.path = "/b"; },
            [](auto& finding) { finding.level = ThreatLevel::safe; },
            [](auto& finding) { finding.reason = ""; },
        });
    expectEveryFieldToCount<QuarantineItem>(
        {Uuid::random(), "/a", "/b", "why", test::utc(2026, 1, 1)},
        {
            [](auto& item) { item.id = Uuid::random(); },
            [](auto& item) { std::swap(item.originalPath, item.quarantinedPath); },
            [](auto& item) { item.reason = ""; },
            [](auto& item) { item.date = test::utc(2026, 1, 2); },
        });
    expectEveryFieldToCount<ActivityEvent>(
        {Uuid::random(), test::utc(2026, 1, 1), "title", "detail"},
        {
            [](auto& event) { event.id = Uuid::random(); },
            [](auto& event) { event.date = test::utc(2026, 1, 2); },
            [](auto& event) { event.title = "detail"; },
            [](auto& event) { event.detail = "title"; },
        });
    expectEveryFieldToCount<LeftoverFile>(
        {Uuid::random(), "/a", 1, LeftoverFile::LeftoverKind::logs},
        {
            [](auto& file) { file.id = Uuid::random(); },
            [](auto& file) { file.url = "/b"; },
            [](auto& file) { file.size = 2; },
            [](auto& file) { file.kind = LeftoverFile::LeftoverKind::cache; },
            [](auto& file) { file.isDirectory = true; },
        });
}

} // namespace
} // namespace kestavon
