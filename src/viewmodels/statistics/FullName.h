#pragma once

#include "viewmodels/ValidatableText.h"

/// The rules for a person's full name, the same wherever it is asked for.
namespace FullName {

void Validate(ValidatableText::ValidationArgs *args);

} // namespace FullName
