#include "ui/widgets/path_actions.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace kestavon {

QString clipboardText(const std::string& path)
{
    const auto text = displayText(path);
    return text.toStdString() == path ? text : displayText(fileUrl(path));
}

PathActions::PathActions(AppModel& model)
    : m_model(model)
{
}

void PathActions::open(const FilePath& path)
{
    openItem(path.bytes);
}

void PathActions::openFolder(const FilePath& path)
{
    const auto slash = path.bytes.rfind('/');
    if (slash != std::string::npos)
        openItem(slash == 0 ? "/" : path.bytes.substr(0, slash));
}

void PathActions::copy(const FilePath& path)
{
    QGuiApplication::clipboard()->setText(clipboardText(path.bytes));
}

void PathActions::openItem(const std::string& path)
{
    m_model.openItem(path, [self = QPointer<PathActions>(this)](const std::string& error) {
        if (self && !error.empty())
            Q_EMIT self->failed(fileNameText(error));
    });
}

} // namespace kestavon
