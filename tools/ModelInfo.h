#pragma once

#include "Recognition.h"

#include <string>

/// Shows what is in a model; returns the exit status. SketchUp models are shown in metres.
int ModelInfo(const std::wstring& file, MODEL kind, bool json);
