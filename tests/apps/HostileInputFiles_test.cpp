#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>

#include "HostileInput.h"

// What stands at a path need not be a file.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kNotFound = "The system cannot locate the object specified.";

class HostileInputFiles : public HostileInput {
 protected:
  HostileInputFiles() {
    std::filesystem::create_directory(directory_.path() / "folder");
    if (::mkfifo(directory_.at("pipe").c_str(), 0600) != 0) throw std::runtime_error("mkfifo");
    link("/dev/zero", "endless");
    link("nowhere.xml", "dangling");
    link("circle", "circle");
  }
  void link(const std::string& strTarget, const char* name) const {
    std::filesystem::create_symlink(strTarget, directory_.at(name));
  }
};

TEST_F(HostileInputFiles, AreRefusedWhereTheyAreNone) {
  for (const Role& role : allRoles()) {
    for (const char* file : {"folder", "pipe", "endless", "dangling", "circle", "missing.xml"}) {
      SCOPED_TRACE(std::string(role.option) + ": " + file);
      expectRefused(role, submitWith(role, file), file, kNotFound);
    }
  }
}

TEST_F(HostileInputFiles, MayBeSymbolicLinks) {
  for (const Role& role : kConfigurationRoles) {
    SCOPED_TRACE(role.option);
    const std::string strLink = std::string("link-") + role.file;
    link(role.file, strLink.c_str());
    expectAccepted(role, submitWith(role, strLink));
  }
}

TEST_F(HostileInputFiles, AreNotReadOverTheNetwork) {
  for (const Role& role : kConfigurationRoles) {
    for (const char* url : {"http://127.0.0.1:9/a.xml", "https://127.0.0.1:9/a.xml",
                            "ftp://127.0.0.1:9/a.xml", "file://127.0.0.1/a.xml"}) {
      SCOPED_TRACE(std::string(role.option) + ": " + url);
      expectRefused(role, submitWith(role, url), url, kNotFound);
    }
  }
}

TEST_F(HostileInputFiles, OfADeploymentEndNoPathEarly) {
  // A NUL ends a path for the system, so this would be the honest template under another name.
  std::string strJson = read("deployment.json");
  const std::string strName = "\"template.xml\"";
  strJson.replace(strJson.find(strName), strName.size(), "\"template.xml\\u0000.txt\"");
  write("deployment.json", strJson);
  const Outcome outcome = submit();
  EXPECT_EQ(outcome.run.status, 1);
  EXPECT_THAT(outcome.run.out,
              ::testing::HasSubstr("\"errorDetail\": \"The template xml "
                                   "(./template.xml\\u0000.txt) could not be loaded\""));
}

TEST_F(HostileInputFiles, AreRefusedAsAFormWhereTheyCannotBeRead) {
  for (const char* file : {"folder", "dangling", "circle", ""}) {
    EXPECT_TRUE(CouldNotRun(submit({"--form", file}).run, std::string("--form ") + file + ": "));
  }
}

TEST_F(HostileInputFiles, AreRefusedWhereTheyCouldBeWaitedForWithoutEnd) {
  std::filesystem::create_directory(directory_.path() / "site");
  for (const char* file : {"pipe", "endless"}) {
    SCOPED_TRACE(file);
    EXPECT_TRUE(CouldNotRun(submit({"--form", file}).run,
                            std::string("--form ") + file + ": it is no regular file"));
    std::filesystem::remove(directory_.path() / "site" / "deployment.json");
    link(directory_.at(file), "site/deployment.json");
    EXPECT_TRUE(CouldNotRun(build({"--deployment", "site"}, {.lngSeconds = 100}),
                            "site/deployment.json: it is no regular file"));
  }
  for (const char* option : {"--park-out", "--send-out", "--result", "--trace"}) {
    EXPECT_TRUE(CouldNotRun(buildDeployment({option, "pipe"}),
                            std::string(option) + " pipe: it is no regular file"));
  }
}

TEST_F(HostileInputFiles, MayBeAStandardStreamUnderItsOtherName) {
  expectSent(submit({"--form", "/dev/stdin"}, {.strInput = read("card.form") + "\n"}));
}

TEST_F(HostileInputFiles, OfADeploymentMayNestAsDeepAsTheyLike) {
  write("deployment.json", "{\"template\": " + std::string(1'000'000, '['));
  EXPECT_TRUE(CouldNotRun(submit().run, "./deployment.json: "));
  write("deployment.json",
        "{\"template\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}");
  EXPECT_TRUE(CouldNotRun(submit().run, "\"template\" is no text"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
