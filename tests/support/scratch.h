// Files and folders that a test creates.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace testing_support {

/// True in the host build.
inline constexpr bool onHost = std::filesystem::path::preferred_separator == '/';

/// The folder of this process and its children, removed when the process exits.
const std::filesystem::path& scratchFolder();

/// Converts a path to a Windows path in UTF-8.
std::string windowsPath(const std::filesystem::path& path);

/// Writes a file. Creates its folder if necessary.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

std::string readFile(const std::filesystem::path& file);

/// The executable of this process.
std::filesystem::path thisProgram();

/// An application: a folder in the scratch folder, with a link to this program.
class Application
{
public:
    explicit Application(std::string_view folderName = "app");

    std::filesystem::path folder() const { return m_folder; }
    std::filesystem::path program() const { return m_program; }

    /// Adds a link to another program of this build and returns the link's path.
    std::filesystem::path addProgram(std::string_view name) const;
    /// Adds a language's folder and the library in it.
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
