// A process the tests kill in the middle of replacing a file: it writes part of the new
// content, says so on its output, then waits until it is killed.
#include "platform/filenames.h"
#include "platform/filereplace.h"

#include <cstdio>
#include <cstring>

// replacefile_helper <path> unnamed|named
int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const auto staging = std::strcmp(argv[2], "named") == 0 ? brindar::Staging::Named : brindar::Staging::Unnamed;
    const auto error = brindar::ReplaceFile(brindar::DecodeFileName(argv[1]), [](QFile& file) {
        const QByteArray part(8 << 20, 'n');
        std::puts(file.write(part) == part.size() && file.flush() ? "writing" : "failed");
        std::fflush(stdout);
        // Standard input stays open until the test kills this process.
        while (std::getchar() != EOF) {
        }
        return false;
    }, staging);
    return error ? 1 : 0;
}
