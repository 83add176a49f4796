#pragma once

#include <string_view>

namespace kestavon {

/// Whether a folder of this name is a package: an application, a plug-in or a library of documents
/// that its owner sees as one thing. Goes by the extension, in any case of letters. Meant for
/// folders only; a file of such a name is a file.
bool hasPackageExtension(std::string_view folderName);

} // namespace kestavon
