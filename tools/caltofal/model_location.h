// Which model file a command runs on. A model named on the command line is
// used in place; otherwise the command works on a copy of the bundled sample
// in the user's state directory, so the bundled file never changes.
#pragma once

#include <string>

namespace cli {

struct ModelFile {
  std::string path;          // absolute
  bool workingCopy = false;  // the state directory's copy of the sample
};

// The model for a command: `named` (from --model) when not empty, else the
// working copy, created from the sample when `create` is set and it is
// missing. On failure returns false with a sentence in `error`.
bool locateModel(const std::string &named, bool create, ModelFile *model, std::string *error);

// Makes the library's platform read `model` (sets CALTOFAL_MODEL); to be
// called before the first library call.
bool selectModel(const ModelFile &model, std::string *error);

// The bundled sample: the build's copy, or the installed one beside the
// executable; empty when neither is readable.
std::string sampleModelPath();

// Where the working copy lives: $XDG_STATE_HOME/caltofal/gateway.model, by
// default ~/.local/state/caltofal/gateway.model. Empty when no home is known.
std::string workingCopyPath();

// The journal of what was applied to a model: the file beside it.
std::string journalPathOf(const std::string &modelPath);

}  // namespace cli
