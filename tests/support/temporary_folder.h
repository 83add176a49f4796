#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestavon::test {

/// A folder of its own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        auto name = (std::filesystem::temp_directory_path() / "kestavon-test-XXXXXX").native();
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder");
        m_path = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return m_path; }
    /// The absolute path of what lies at `relative` in the folder.
    std::string operator/(std::string_view relative) const
    {
        return m_path + '/' + std::string(relative);
    }

    /// Makes a folder and those above it; returns its absolute path.
    std::string makeFolder(std::string_view relative) const
    {
        std::filesystem::create_directories(*this / relative);
        return *this / relative;
    }

    /// Writes a file, with the folders above it; returns its absolute path.
    std::string writeFile(std::string_view relative, std::string_view bytes = "") const
    {
        const auto path = *this / relative;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    std::string readFile(std::string_view relative) const
    {
        std::ifstream file(*this / relative, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::string m_path;
};

} // namespace kestavon::test
