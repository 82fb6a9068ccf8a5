#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

// The main of a fuzzer that is built without libFuzzer: gives each input, and each file of a
// directory of inputs, to the fuzzer once.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string strInput{std::istreambuf_iterator<char>(file), {}};
  if (file.bad() || !file) return false;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(strInput.data()), strInput.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> inputs;
  for (const std::string& strArgument : std::vector<std::string>(argv + 1, argv + argc)) {
    if (!std::filesystem::is_directory(strArgument)) {
      inputs.emplace_back(strArgument);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(strArgument)) {
      inputs.push_back(entry.path());
    }
  }
  for (const auto& input : inputs) {
    std::cout << input.filename().string() << std::endl;  // the last one named is the one that fell
    if (replay(input)) continue;
    std::cerr << input << " cannot be read\n";
    return 2;
  }
  if (inputs.empty()) std::cerr << "usage: " << argv[0] << " INPUT-OR-DIRECTORY...\n";
  return inputs.empty() ? 2 : 0;
}
