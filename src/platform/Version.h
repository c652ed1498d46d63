#pragma once

namespace corvel {

/// The program's version as its package bears it: "0.1.0", or with a suffix for what is built
/// between two versions.
const char* version();

}  // namespace corvel
