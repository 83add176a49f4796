#include "ui/shell/window_folder_picker.h"

#include <utility>

namespace kestavon {

QUrl urlFromPath(const std::string& path)
{
    return QUrl::fromEncoded(
        "file://" + QByteArray::fromStdString(path).toPercentEncoding("/"), QUrl::StrictMode);
}

std::string pathFromUrl(const QUrl& url)
{
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

void WindowFolderPicker::pickFolder(const std::string& folder, Done done)
{
    if (m_done) {
        done(std::nullopt);
        return;
    }
    m_done = std::move(done);
    Q_EMIT pickRequested(urlFromPath(folder));
}

void WindowFolderPicker::accept(const QUrl& folder)
{
    auto path = pathFromUrl(folder);
    answer(path.empty() ? std::nullopt : std::optional(std::move(path)));
}

void WindowFolderPicker::acceptPath(const FilePath& folder)
{
    answer(folder.empty() ? std::nullopt : std::optional(folder.bytes));
}

void WindowFolderPicker::cancel()
{
    answer(std::nullopt);
}

void WindowFolderPicker::answer(std::optional<std::string> folder)
{
    if (const auto done = std::exchange(m_done, nullptr))
        done(std::move(folder));
}

} // namespace kestavon
