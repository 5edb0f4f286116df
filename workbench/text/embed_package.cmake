# Writes the bytes of a data package as a C++ source: cmake -DPACKAGE=in -DSOURCE=out -P embed_package.cmake
# ICU reads a package in place, so it stands at an address that fits its widest member.
file(READ ${PACKAGE} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?(0x[0-9a-f][0-9a-f],)?)"
  "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"workbench/text/wording_package.h\"

namespace workbench::text {

alignas(16) extern const unsigned char wordingPackage[] = {
${bytes}};

}  // namespace workbench::text
")
