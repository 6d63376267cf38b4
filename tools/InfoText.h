#pragma once

#include "support/Point.h"

#include <nlohmann/json.hpp>

#include <string>

// How 'halyard info' shows what it found.

using Json = nlohmann::ordered_json;

/// Three numbers; those that JSON does not know become null.
Json PointJson(const GTL::Point3D<double>& point);

/// The whole output. JSON may hold the characters U+007F to U+009F as they are but a terminal obeys them:
/// they are escaped.
std::string JsonText(const Json& json);

/// A name of a drawing for people.
std::string Shown(const std::wstring& text);

/// The shortest text that reads as the same number.
std::string ShortestText(double value);
std::string ShortestText(float value);

/// For people: no more than six decimals, which is what files mostly hold, and no zeros at the end.
std::string PointText(const GTL::Point3D<double>& point);
