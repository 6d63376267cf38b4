#pragma once

#include "Drawing.h"

#include <functional>
#include <optional>
#include <string>

namespace CLI {
class App;
}

/// What the commands that read a drawing, change it and write it again have in common.
struct EditOptions {
    std::string in;
    std::string out;
    bool trueColor = false;
    /// The drawing is taken as it was read: inserts are not exploded, and lose their blocks when written.
    bool plain = false;
    /// The change leaves inserts what they are: where the file to write holds blocks, they stay.
    bool keepsInserts = false;
    /// Models are read too, in this way.
    std::optional<ModelOptions> models = {};
};

/// Adds IN, OUT, --true-color and --plain.
void AddEditOptions(CLI::App& command, EditOptions& options);

/// Changes the drawing. Otherwise says why not, in a clause that follows the file's name.
using Change = std::function<std::optional<std::wstring>(Drawing& drawing)>;

/// Reads IN, explodes its inserts, makes the change, brings the drawing to the form that the written file can
/// hold, and writes OUT, of the kind that its name says, beside its place before it is put there. Says what
/// went wrong; returns the exit status.
int EditDrawing(const EditOptions& options, const Change& change);
