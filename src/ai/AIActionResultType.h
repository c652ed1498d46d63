#pragma once

namespace corvel {

/// How a finished result of an action may be used.
enum class AIActionResultType { replaceSelection, replaceDocument, insertAtTop, review, copyOnly };

}  // namespace corvel
