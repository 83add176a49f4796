#pragma once

namespace kestavon {

/// Where the product's makers are to be found.
constexpr auto websiteUrl = "https://kestavon.example";
constexpr auto supportAddress = "support@kestavon.example";

} // namespace kestavon
