#pragma once

#include "model/ViewContext.h"

namespace corvel {

/// Adds the two notes that a store in memory starts with. Their attributes are set directly: no tag
/// objects are made for the tags in their text, and their word counts are fixed.
void seedSampleNotes(ViewContext& context);

}  // namespace corvel
