#pragma once

#include "core/model/background.h"

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestavon {

/// Applications' icons in files. Any thread, but the files may lie where reading takes forever.
class AppIconFiles {
public:
    /// `dataFolders` hold icons in "icons" and "pixmaps", the first goes first. Main thread.
    explicit AppIconFiles(const std::vector<std::string>& dataFolders);

    /// An icon, named as a desktop entry does: by its path (a Mac's .icns too), or in the desktop's
    /// icon themes. As wide or as high as `pixels`; the symbol of an application, in `color`, where
    /// there is none that can be read.
    QImage draw(const std::string& icon, const QColor& color, int pixels) const;

private:
    /// The file of a theme's icon that suits the size best; empty when there is none.
    std::string fileOf(const std::string& icon, int pixels) const;

    std::vector<std::string> m_dataFolders;
    std::vector<std::string> m_themes;
};

/// Shows applications' icons for `image://appicon/RRGGBB/KEY`: the icon that `iconKey` made the key
/// of, the symbol in that colour. Neither the window nor quitting waits for a file, and what hangs
/// on a path outside of the themes keeps no icon of a theme waiting.
class AppIconProvider final : public QQuickAsyncImageProvider {
public:
    /// `AppIconFiles::draw`, or in its place. Called on two threads at once; what it captured may
    /// outlive the provider.
    using Draw = std::function<QImage(const std::string& icon, const QColor& color, int pixels)>;

    /// See AppIconFiles.
    explicit AppIconProvider(const std::vector<std::string>& dataFolders);
    explicit AppIconProvider(Draw draw);

    QQuickImageResponse* requestImageResponse(
        const QString& id, const QSize& requestedSize) override;

private:
    std::shared_ptr<const Draw> m_draw;
    SerialQueue m_themeQueue;
    SerialQueue m_pathQueue; // reads what lies anywhere
};

} // namespace kestavon
