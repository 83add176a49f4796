#pragma once

#include <QQuickImageProvider>
#include <QStringList>

#include <string>
#include <vector>

namespace kestavon {

/// Draws applications' icons for `image://appicon/RRGGBB/KEY`: the icon that `iconKey` made the key
/// of, from a file (a Mac's .icns too) or the desktop's icon themes; the symbol of an application
/// in that colour where there is none that can be read. Off the main thread.
class AppIconProvider final : public QQuickImageProvider {
public:
    /// `dataFolders` hold icons in "icons" and "pixmaps", the first goes first.
    explicit AppIconProvider(const std::vector<std::string>& dataFolders);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    /// The file of a theme's icon that suits the size best; empty when there is none.
    std::string fileOf(const std::string& icon, int pixels) const;

    std::vector<std::string> m_dataFolders;
    std::vector<std::string> m_themes;
};

} // namespace kestavon
