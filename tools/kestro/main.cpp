#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "--help";
    if (command == "--version") {
        std::cout << "kestro " << KESTRO_VERSION_TEXT << "\n";
        return 0;
    }
    std::cout << "usage: kestro inventory --output DIR\n";
    return 0;
}
