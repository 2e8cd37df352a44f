// Another process for the tests of shared preferences: `PrefsPeer FILE GROUP COUNT` sets two values of the
// group to the same long text and writes the file, COUNT times.
#include <cstdlib>
#include <string>

#include "framework/GFrameworkScope.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/services/GPrefFileModule.h"

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const GFrameworkScope framework;
    try {
        GPrefSharedFileModule module(GPathName(argv[1]), GUnicodeEncoding::GetInstance());
        for (long number = 1; number <= std::atol(argv[3]); ++number) {
            const std::string text = std::to_string(number) + std::string(5000, '.');
            for (const char* const key : {"first", "second"}) module.Set(argv[2], key, text.c_str());
            module.FlushPrefs();
        }
    } catch (const GException&) {
        return 1;
    }
    return 0;
}
