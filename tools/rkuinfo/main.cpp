// rkuinfo: shows and changes what RkUInfo knows about the program in its own folder.
#include "commands/command_line.h"
#include "model/system.h"
#include "text/print.h"
#include "text/text.h"

#include <RkUInfo.h>

#include <cstdio>
#include <new>
#include <string>
#include <vector>

namespace {

int fail(const std::string& sentence, int exitCode)
{
    printError(sentence);
    return exitCode;
}

int run(const std::vector<std::string>& words)
{
    const int exitCode = runCommandLine(words);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        return fail("the output cannot be written", exitFailed);
    }
    return exitCode;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    const Console console;
    const std::string noMemory = "out of memory"; // of no need of memory then
    try {
        std::vector<std::string> words;
        for (int i = 1; i < argc; ++i) {
            words.push_back(utf8(rkuinfo::text(argv[i])));
        }
        return run(words);
    } catch (const Failure& failure) {
        return fail(failure.what(), failure.exitCode());
    } catch (RkException* exception) { // thrown without memory; by pointer, as the whole family is
        delete exception;
        return fail(noMemory, exitFailed);
    } catch (const std::bad_alloc&) {
        return fail(noMemory, exitFailed);
    }
}
