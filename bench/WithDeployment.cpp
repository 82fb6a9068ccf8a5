#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

#include "GeneratedDeployment.h"

// Writes a deployment, with deployment.json and the form answers.form, and runs a shell command in
// its folder, which is gone afterwards. The exit status is 1 when the command's is not 0.
//
//   with_deployment KIND SIZE COMMAND

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc != 4) {
    std::cerr << "usage: with_deployment KIND SIZE COMMAND\n";
    return 2;
  }
  try {
    const GeneratedDeployment deployment(dimensionsOf(argv[1], std::atoi(argv[2])));
    std::filesystem::current_path(deployment.directory());
    return std::system(argv[3]) == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
