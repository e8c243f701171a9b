#include "support/scratch.h"

#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace testing_support {

namespace fs = std::filesystem;

namespace {

#if defined(_WIN32)
constexpr char programSuffix[] = ".exe";
constexpr std::size_t drive = 0; // characters that a path of the target does not begin with
#else
constexpr char programSuffix[] = "";
constexpr std::size_t drive = 2;
#endif

fs::path binFolder()
{
    return thisProgram().parent_path();
}

} // namespace

std::string windowsPath(const fs::path& path)
{
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text.starts_with('\\') ? "Z:" + text : text;
}

void writeFile(const fs::path& file, std::string_view bytes)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string readFile(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

fs::path thisProgram()
{
    wchar_t path[1024] = {};
    GetModuleFileNameW(nullptr, path, 1024);
    std::string text = utf8(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    return text.substr(drive);
}

Application::Application(std::string_view folderName) : m_folder(scratchFolder() / folderName)
{
    fs::create_directories(m_folder);
    fs::create_hard_link(thisProgram(), program());
    for (const auto& entry : fs::directory_iterator(binFolder())) {
        if (entry.path().extension() == ".dll") { // on the host, programs find their libraries where they are
            fs::create_hard_link(entry.path(), m_folder / entry.path().filename());
        }
    }
}

fs::path Application::program() const
{
    return (m_folder / "cad") += programSuffix;
}

fs::path Application::addProgram(std::string_view name) const
{
    const fs::path fileName = fs::path(name) += programSuffix;
    fs::create_hard_link(binFolder() / fileName, m_folder / fileName);
    return m_folder / fileName;
}

void Application::addLanguage(std::string_view shortName) const
{
    const fs::path library = fs::path(shortName) / "RkUInfoRes.dll";
    fs::create_directories(m_folder / shortName);
    // No link: a file that another process has loaded cannot be removed by any of its names.
    fs::copy_file(binFolder() / library, m_folder / library);
}

void Application::writeIni(std::string_view text, std::string_view fileName) const
{
    writeFile(m_folder / fileName, text);
}

} // namespace testing_support
