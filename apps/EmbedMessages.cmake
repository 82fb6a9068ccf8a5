# Writes the C++ source of CatalogueFiles.h: run with -DSOURCE=<folder of messages> -DOUTPUT=<file>.
include("${CMAKE_CURRENT_LIST_DIR}/EmbedText.cmake")

set(catalogues "")
file(GLOB files "${SOURCE}/*.json")
foreach(file IN LISTS files)
  get_filename_component(name "${file}" NAME_WE)
  embed(text "${file}")
  string(APPEND catalogues "    {\"${name}\",\n${text}},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"CatalogueFiles.h\"

namespace {
constexpr CatalogueFile kFiles[] = {
${catalogues}};
}  // namespace

std::span<const CatalogueFile> catalogueFiles() { return kFiles; }
")
