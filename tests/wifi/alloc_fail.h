// Makes the library's n-th help_calloc from now fail (0: none fails).
#pragma once

namespace wifitest {

void failAllocation(int n);

}  // namespace wifitest
