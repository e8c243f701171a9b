// rkuinfo: shows and changes what RkUInfo knows about the program in the same folder.
#include "commands/command.h"
#include "model/system.h"

#include <cstdio>
#include <exception>
#include <new>

extern "C" int wmain(int argc, wchar_t** argv)
{
    prepareProcess();
    std::string sentence = "out of memory"; // allocated in advance, because reporting must not allocate
    int exitCode = exitFailed;
    try {
        std::vector<std::string> words;
        for (int i = 1; i < argc; ++i) {
            words.push_back(utf8(argv[i]));
        }
        exitCode = runCommandLine(words);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
            return exitCode;
        }
        sentence = "the output cannot be written";
        exitCode = exitFailed;
    } catch (const Failure& failure) {
        sentence = failure.what();
        exitCode = failure.exitCode;
    } catch (RkException* exception) { // the library throws by pointer when memory is exhausted
        delete exception;
    } catch (const std::bad_alloc&) { // prints "out of memory"
    } catch (const std::exception& exception) {
        sentence = exception.what();
    }
    printError(sentence);
    return exitCode;
}
