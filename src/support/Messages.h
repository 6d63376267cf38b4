#pragma once

#include "platform/Export.h"

/// The library's own texts, by their published numbers. Messages.def is the one table of them.
enum class Message : int {
#define HALYARD_MESSAGE(number, name, text) name = number,
#include "support/Messages.def"
#undef HALYARD_MESSAGE
};

/// The text of a message; empty for a number that has none.
HALYARD_API const wchar_t* MessageText(Message message);
