#ifndef KESTRO_REPOSITORY_RBBCODERENDERER_H
#define KESTRO_REPOSITORY_RBBCODERENDERER_H

#include <string>

namespace kestro {
namespace repository {

// Turns the light square-bracket mark-up of some property values into HTML in one pass.
// Tags are never balanced or checked: unknown ones stay as plain text and are logged.
class RBBCodeRenderer {
public:
    static std::string Render(const std::string& text);
};

}  // namespace repository
}  // namespace kestro

#endif
