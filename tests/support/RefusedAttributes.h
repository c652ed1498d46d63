#pragma once

namespace corvel {

/// While one lives, no extended attribute and no access list can be put on an open file: what a
/// file system without them is like.
class RefusedAttributes {
public:
    RefusedAttributes();
    RefusedAttributes(const RefusedAttributes&) = delete;
    RefusedAttributes& operator=(const RefusedAttributes&) = delete;
    ~RefusedAttributes();
};

}  // namespace corvel
