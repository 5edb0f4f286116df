// The wording of all languages as one ICU data package in memory. The build compiles wording/*.txt with genrb, joins
// the bundles with icupkg and writes the bytes as a C++ source.
#pragma once

namespace workbench::text {

extern const unsigned char wordingPackage[];

}  // namespace workbench::text
