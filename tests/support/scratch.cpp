#include "support/scratch.h"

#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace testing_support {

namespace fs = std::filesystem;

const fs::path& scratchFolder()
{
    static const fs::path folder = std::getenv("RKUINFO_TEST_SCRATCH");
    return folder;
}

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
    constexpr std::size_t drive = onHost ? 2 : 0; // winhost's paths begin with "Z:"
    wchar_t path[1024] = {};
    GetModuleFileNameW(nullptr, path, 1024);
    std::string text = utf8(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    return text.substr(drive);
}

Application::Application(std::string_view folderName)
    : m_folder(scratchFolder() / folderName),
      m_program(m_folder / fs::path("cad").replace_extension(thisProgram().extension()))
{
    fs::create_directories(m_folder);
    fs::create_hard_link(thisProgram(), m_program);
    for (const auto& entry : fs::directory_iterator(thisProgram().parent_path())) {
        // On the host, programs find libraries by their paths in the build tree.
        if (entry.path().extension() == ".dll") {
            fs::create_hard_link(entry.path(), m_folder / entry.path().filename());
        }
    }
}

fs::path Application::addProgram(std::string_view name) const
{
    const fs::path added = m_folder / fs::path(name).replace_extension(m_program.extension());
    fs::create_hard_link(thisProgram().replace_filename(added.filename()), added);
    return added;
}

void Application::addLanguage(std::string_view shortName) const
{
    const fs::path library = fs::path(shortName) / "RkUInfoRes.dll";
    fs::create_directories(m_folder / shortName);
    // This must be a copy, because Windows cannot remove a hard link to a file that a process has loaded.
    fs::copy_file(thisProgram().replace_filename(library), m_folder / library);
}

} // namespace testing_support
