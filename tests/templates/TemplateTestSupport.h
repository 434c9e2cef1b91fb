#pragma once
// Shared by the template tests: the twenty (kind, operation) pairs that have a template, a
// scratch folder, and a template file read back the way a run reads it.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "csv/Templates.h"
#include "platform/Cp932.h"

namespace orin::test {

struct TemplatePair {
    ObjectKind kind;
    OperationKind op;
};

inline std::vector<TemplatePair> AllTemplatePairs() {
    std::vector<TemplatePair> pairs;
    for (ObjectKind kind : {ObjectKind::OU, ObjectKind::Group, ObjectKind::User,
                            ObjectKind::Computer, ObjectKind::SharedFolder})
        for (OperationKind op :
             {OperationKind::Add, OperationKind::Del, OperationKind::Mov, OperationKind::Mdf})
            pairs.push_back({kind, op});
    return pairs;
}

inline std::string PairName(const TemplatePair& p) {
    return TemplateName(p.kind, p.op);
}

// A folder of the test's own, removed afterwards.
class TemplateScratch {
  public:
    TemplateScratch() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path() / "orin_template_test" /
                (std::string(info->test_suite_name()) + "." + info->name());
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TemplateScratch() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

inline std::string ReadFileBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The lines of a file split on CR LF exactly; a lone CR or LF stays inside its line.
inline std::vector<std::string> SplitCrLf(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t at; (at = text.find("\r\n", start)) != std::string::npos; start = at + 2)
        lines.push_back(text.substr(start, at - start));
    if (start < text.size()) lines.push_back(text.substr(start));
    return lines;
}

}  // namespace orin::test
