#pragma once

#include "platform/SecretStore.h"

#include <string>

namespace corvel {

/// Why a key was not saved.
struct KeychainError {
    SecretStore::Status status;

    std::string description() const {
        return "Failed to save to Keychain (status: " + std::to_string(status) + ")";
    }
    /// It is locked and was not opened.
    bool isLocked() const { return SecretStore::isLocked(status); }
    /// No password store runs on this computer.
    bool isServiceMissing() const { return SecretStore::isServiceMissing(status); }
};

}  // namespace corvel
