#include "ui/shell/work_state.h"

#include "core/domain/removal_guard.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QStringList>

#include <algorithm>

namespace kestavon {

QString workText(const FileWork& work)
{
    if (work.item == 0) // It is still looked at what is to be done.
        return u"Preparing…"_s;
    const auto name = fileNameText(lastComponent(work.path));
    switch (work.deed) {
    case FileWork::Deed::hold: return u"Moving “%1” to the Safe Area…"_s.arg(name);
    case FileWork::Deed::restore: return u"Putting “%1” back…"_s.arg(name);
    case FileWork::Deed::trash: return u"Moving “%1” to the Trash…"_s.arg(name);
    case FileWork::Deed::remove: break;
    }
    return u"Deleting “%1”…"_s.arg(name);
}

QString workDetail(const FileWork& work)
{
    QStringList parts;
    if (work.bytesToCopy > 0 && work.copiedBytes < work.bytesToCopy)
        parts << u"%1 of %2"_s.arg(byteText(work.copiedBytes), byteText(work.bytesToCopy));
    else if (work.bytesToCopy > 0) // It goes to the disk and is compared, before the source goes.
        parts << u"%1 copied, finishing"_s.arg(byteText(work.copiedBytes));
    if (work.removedEntries > 0)
        parts << u"%1 deleted"_s.arg(work.removedEntries);
    if (work.items > 1 && work.item > 0)
        parts << u"item %1 of %2"_s.arg(work.item).arg(work.items);
    return parts.join(u" · "_s);
}

double workShare(const FileWork& work)
{
    const double copied = work.bytesToCopy > 0
        ? static_cast<double>(work.copiedBytes) / static_cast<double>(work.bytesToCopy)
        : 0;
    if (work.items > 1) {
        const auto before = static_cast<double>(std::max<std::int64_t>(work.item - 1, 0));
        return std::clamp((before + copied) / static_cast<double>(work.items), 0.0, 1.0);
    }
    return work.bytesToCopy > 0 ? std::clamp(copied, 0.0, 1.0) : -1;
}

QString partlyDeletedText(const PartlyDeleted& part)
{
    const auto gone = part.entries == 1
        ? u"1 file or folder of it is gone."_s
        : u"%1 files and folders of it are gone."_s.arg(part.entries);
    return u"Stopped while “%1” was being deleted: "_s.arg(fileNameText(lastComponent(part.path)))
        + gone;
}

WorkState::WorkState(AppModel& model, NoticeState& notice)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this, &notice](AppModel::Field field) {
        if (field == AppModel::Field::partlyDeleted && m_model.partlyDeleted())
            notice.show(partlyDeletedText(*m_model.partlyDeleted()));
        if (field != AppModel::Field::fileWork)
            return;
        m_last = m_model.fileWork().value_or(m_last);
        Q_EMIT changed();
    });
}

} // namespace kestavon
