#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Adds, in lower case, the names under which an application called `name` may keep data: with
/// "-", "_" or nothing for blanks, and without what only tells builds apart, such as "-gtk". Names
/// too short or too common to say anything are left out.
void addTermsOf(std::string_view name, std::vector<std::string>& terms);

/// The same for an identifier like "org.example.Editor": all of it, "example.Editor" and "Editor".
void addTermsOfIdentifier(std::string_view identifier, std::vector<std::string>& terms);

/// Adds the names that data of an application with these terms has by old custom, such as "purple"
/// for Pidgin's.
void addKnownAliases(std::vector<std::string>& terms);

/// Whether a program of this name only runs others, and is no sign of which.
bool isLauncher(std::string_view program);

/// `name` in lower case without the endings of settings files: "krc" of "kr" is "k", "a.conf" "a".
std::string withoutSettingEnding(std::string_view name);

} // namespace kestavon
