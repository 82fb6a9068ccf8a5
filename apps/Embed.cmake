# Writes the C++ source of a header that declares `pageFile`, and `migrations` where the folder has
# any: run with -DSOURCE=<folder of pages/ and migrations/> -DHEADER=<header> -DOUTPUT=<file>.
include("${CMAKE_CURRENT_LIST_DIR}/EmbedText.cmake")

set(migrations "")
file(GLOB files "${SOURCE}/migrations/*.sql")
foreach(file IN LISTS files)
  get_filename_component(name "${file}" NAME)
  string(REGEX MATCH "^0*([0-9]+)-" number "${name}")
  embed(text "${file}")
  string(APPEND migrations "    {${CMAKE_MATCH_1},\n${text}},\n")
endforeach()
if(migrations)
  set(migrations "
namespace {
constexpr Migration kMigrations[] = {
${migrations}};
}  // namespace

std::span<const Migration> migrations() { return kMigrations; }
")
endif()
set(pages "")
file(GLOB files "${SOURCE}/pages/*")
foreach(file IN LISTS files)
  get_filename_component(name "${file}" NAME)
  embed(text "${file}")
  string(APPEND pages "  if (strName == \"${name}\") {\n    return\n${text};\n  }\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"${HEADER}\"
${migrations}
std::string_view pageFile(std::string_view strName) {
${pages}  return {};
}
")
