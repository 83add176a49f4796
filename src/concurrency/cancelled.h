#pragma once

namespace kestavon {

/// Thrown by work that saw its stop token. It carries nothing: only its type is ever looked at.
struct Cancelled { };

} // namespace kestavon
