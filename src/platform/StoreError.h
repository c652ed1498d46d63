#pragma once

#include <stdexcept>
#include <string>

namespace corvel {

/// What kind of trouble the store has: what a caller decides on. `invalid` is the fault of the
/// change itself (a broken constraint, a value too big); the same change would fail again.
enum class StoreFault { locked, corrupt, readOnly, diskFull, invalid, failed };

/// Thrown by everything that touches the store; `what()` is a sentence for people.
class StoreError : public std::runtime_error {
public:
    StoreError(StoreFault fault, const std::string& message)
        : std::runtime_error(message), m_fault(fault) {}

    StoreFault fault() const { return m_fault; }

private:
    StoreFault m_fault;
};

}  // namespace corvel
