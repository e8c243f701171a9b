// Files and folders that a test makes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace testing_support {

/// Whether this is no Windows.
inline constexpr bool onHost = std::filesystem::path::preferred_separator == '/';

/// The folder of this process and its children, removed when the process ends.
const std::filesystem::path& scratchFolder();

/// A path as Windows writes it, in UTF-8.
std::string windowsPath(const std::filesystem::path& path);

/// Writes a file and the folders on its way.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

std::string readFile(const std::filesystem::path& file);

/// The executable of this process.
std::filesystem::path thisProgram();

/// An application: a folder of the scratch folder with this test program in it, under a name of its own.
class Application
{
public:
    explicit Application(std::string_view folderName = "app");

    std::filesystem::path folder() const { return m_folder; }
    std::filesystem::path program() const { return m_program; }

    /// Puts another program of this build into it; gives its path.
    std::filesystem::path addProgram(std::string_view name) const;
    /// Makes a language's folder with a library in it.
    void addLanguage(std::string_view shortName) const;
    void writeIni(std::string_view text, std::string_view fileName = "TARVO.ini") const
    {
        writeFile(m_folder / fileName, text);
    }

private:
    std::filesystem::path m_folder;
    std::filesystem::path m_program;
};

} // namespace testing_support
