#pragma once

#include "core/domain/system_state.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Bytes of memory in the units of every screen, "2.87 GB".
QString memoryFigure(std::uint64_t bytes);

/// Whether a process takes so much that its figure stands out.
bool isLargeProcess(const AppProcessInfo& process);

/// The processes whose names contain `text`, in their order; all for an empty one.
std::vector<AppProcessInfo> processesNamed(
    const std::vector<AppProcessInfo>& processes, std::string_view text);

/// The question and the failure cut a name that is longer than a sentence bears.
ConfirmationTexts forceQuitQuestion(const QString& name);
QString quitFailure(const QString& name);

/// An application's icon as AppIcon takes it; empty for none.
QString iconKey(const std::optional<std::string>& icon);
/// The theme's name or the path that such a key stands for, byte for byte.
std::string iconOfKey(const QString& key);

} // namespace kestavon
