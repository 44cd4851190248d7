#include "repository/rbbcoderenderer.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <vector>

using kestro::repository::RBBCodeRenderer;

namespace {

struct BBCodeCase {
    const char* input;
    const char* html;
    // The tag texts of the "unsupported" lines expected, one line each.
    std::vector<const char*> unsupported;
};

const BBCodeCase kCases[] = {
    {"", "", {}},
    {"plain text", "plain text", {}},
    {"[b]x[/b]", "<b>x</b>", {}},
    {"[i]x[/i][s]y[/s][u]z[/u]", "<i>x</i><s>y</s><u>z</u>", {}},
    {"[img]a.png[/img]", "<img src=\"a.png\"/>", {}},
    {"[url]http://a[/url]", "<a href=\"http://a\">http://a</a>", {}},
    {"[url]http://a", "<a href=\"http://a\">http://a</a>", {}},
    {"[url]a]b", "<a href=\"a]b\">a]b</a>", {}},
    {"[url][b]x[/b][/url]", "<a href=\"\"><b>x</b></a>", {}},
    {"[url=http://a]text[/url]", "<a href=\"http://a\">text</a>", {}},
    {"[color=red]x[/color]", "<span style=\"color:red\">x</span>", {}},
    {"[size=12]x[/size]", "<span style=\"font-size:12px\">x</span>", {}},
    {"[color=\"><script>]x", "<span style=\"color:\"><script>\">x", {}},
    // Closing forms of the value tags skip one character after the word, whatever it is.
    {"[/urlx]", "</a>]", {}},
    {"[/color]", "</span>", {}},
    {"a[b", "a[b", {}},
    {"x[", "x[", {}},
    {"x[/", "x[/", {}},
    {"a]b", "a]b", {}},
    {"[a[b]c[/b]", "[a<b>c</b>", {}},
    {"[/a[b]", "[/a<b>", {}},
    {"[[b]]", "[<b>]", {}},
    // Tags are never balanced: openers and closers each write their own mark-up.
    {"[b][i]x[/b][/i]", "<b><i>x</b></i>", {}},
    {"[/b]x", "</b>x", {}},
    {"[/img]", "\"/>", {}},
    {"[b]bold [color=blue][i]both[/i][/color][/b]",
     "<b>bold <span style=\"color:blue\"><i>both</i></span></b>", {}},
    {"[x]", "[x]", {"x"}},
    {"[]", "[]", {""}},
    {"[/]", "[/]", {""}},
    {"[B]x", "[B]x", {"B"}},
    {"[b=1]", "[b=1]", {"b=1"}},
    {"[urlx]", "[urlx]", {"urlx"}},
    {"[color]x", "[color]x", {"color"}},
    {"[colour=red]", "[colour=red]", {"colour=red"}},
    {"a [x] b [i]c", "a [x] b <i>c", {"x"}},
    // Each unsupported tag is logged once.
    {"[x]1[/y]2[z=3]", "[x]1[/y]2[z=3]", {"x", "y", "z=3"}},
};

}  // namespace

TEST(RBBCodeRendererTest, RendersEveryTagAndKeepsTheRestAsPlainText)
{
    for (const BBCodeCase& c : kCases) {
        LogCapture capture;
        EXPECT_EQ(c.html, RBBCodeRenderer::Render(c.input)) << "input: " << c.input;
        EXPECT_EQ(static_cast<int>(c.unsupported.size()), capture.Count("Unsupported BBCode")) << c.input;
        for (const char* tag : c.unsupported)
            EXPECT_TRUE(capture.Has(1, std::string("[repo] Unsupported BBCode, treat as plain text: ") + tag))
                << "input: " << c.input << "\n" << capture.Dump();
    }
}
