// Files as a command names them; "-" and no name are the standard streams.
#pragma once

#include <string>
#include <string_view>

std::string toldName(const std::string& file, const char* stream);
std::string readFile(const std::string& file);
/// Writes a file beside it and puts that in its place, so that it is there whole or as it was; straight into
/// what is no regular file, such as a device.
void writeFile(const std::string& file, std::string_view bytes);
