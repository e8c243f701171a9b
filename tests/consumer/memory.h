// Memory that runs out.
#pragma once

/// While it lives, the library's next request for memory is refused, and later ones are not.
class RefusedMemory
{
public:
    RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
    ~RefusedMemory();
};
