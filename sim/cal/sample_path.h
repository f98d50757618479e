#pragma once

#include <string>

namespace calsim {

// The bundled sample model: the copy installed under share/caltofal beside
// this library's lib folder when there is one (an installed library), else
// the source tree's (a build's library). Looked up once per process.
const std::string &sampleModelPath();

}  // namespace calsim
