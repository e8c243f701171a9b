// A client that includes the typed value alone and links no more than RkOsBase.
#include <RkUInfo/VelaVariant.h>

static_assert(__cplusplus < 201700L, "clients may be compiled as C++14");

int main() // NOLINT(bugprone-exception-escape)
{
    VelaVariant value;
    value.setInt(1);
    value.setInt64(2);
    value.setDouble(3);
    value.setBinary("data", 4);
    value.setString(L"text");
    const VelaVariant copy(value);
    try {
        value.setBinary("data", -1);
    } catch (RkException* exception) {
        const bool right = exception->code() == Vela::eInvalidInput && copy.getString()[3] == L't';
        delete exception;
        return right ? 0 : 1;
    }
    return 1;
}
