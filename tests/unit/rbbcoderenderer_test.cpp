#include "repository/rbbcoderenderer.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using kestro::repository::RBBCodeRenderer;

namespace {

struct BBCodeCase {
    const char* input;
    const char* html;
    // The tag text of the one "unsupported" line expected, or null when nothing is logged.
    const char* unsupported;
};

const BBCodeCase kCases[] = {
    {"", "", nullptr},
    {"plain text", "plain text", nullptr},
    {"[b]x[/b]", "<b>x</b>", nullptr},
    {"[i]x[/i][s]y[/s][u]z[/u]", "<i>x</i><s>y</s><u>z</u>", nullptr},
    {"[img]a.png[/img]", "<img src=\"a.png\"/>", nullptr},
    {"[url]http://a[/url]", "<a href=\"http://a\">http://a</a>", nullptr},
    {"[url]http://a", "<a href=\"http://a\">http://a</a>", nullptr},
    {"[url]a]b", "<a href=\"a]b\">a]b</a>", nullptr},
    {"[url][b]x[/b][/url]", "<a href=\"\"><b>x</b></a>", nullptr},
    {"[url=http://a]text[/url]", "<a href=\"http://a\">text</a>", nullptr},
    {"[color=red]x[/color]", "<span style=\"color:red\">x</span>", nullptr},
    {"[size=12]x[/size]", "<span style=\"font-size:12px\">x</span>", nullptr},
    {"[color=\"><script>]x", "<span style=\"color:\"><script>\">x", nullptr},
    // Closing forms of the value tags skip one character after the word, whatever it is.
    {"[/urlx]", "</a>]", nullptr},
    {"[/color]", "</span>", nullptr},
    {"a[b", "a[b", nullptr},
    {"x[", "x[", nullptr},
    {"x[/", "x[/", nullptr},
    {"a]b", "a]b", nullptr},
    {"[a[b]c[/b]", "[a<b>c</b>", nullptr},
    {"[/a[b]", "[/a<b>", nullptr},
    {"[[b]]", "[<b>]", nullptr},
    // Tags are never balanced: openers and closers each write their own mark-up.
    {"[b][i]x[/b][/i]", "<b><i>x</b></i>", nullptr},
    {"[/b]x", "</b>x", nullptr},
    {"[/img]", "\"/>", nullptr},
    {"[b]bold [color=blue][i]both[/i][/color][/b]",
     "<b>bold <span style=\"color:blue\"><i>both</i></span></b>", nullptr},
    {"[x]", "[x]", "x"},
    {"[]", "[]", ""},
    {"[/]", "[/]", ""},
    {"[B]x", "[B]x", "B"},
    {"[b=1]", "[b=1]", "b=1"},
    {"[urlx]", "[urlx]", "urlx"},
    {"[color]x", "[color]x", "color"},
    {"[colour=red]", "[colour=red]", "colour=red"},
    {"a [x] b [i]c", "a [x] b <i>c", "x"},
};

}  // namespace

TEST(RBBCodeRendererTest, RendersEveryTagAndKeepsTheRestAsPlainText)
{
    for (size_t i = 0; i < sizeof kCases / sizeof kCases[0]; ++i) {
        const BBCodeCase& c = kCases[i];
        LogCapture capture;
        EXPECT_EQ(c.html, RBBCodeRenderer::Render(c.input)) << "input: " << c.input;
        const int unsupportedLines = capture.Count("Unsupported BBCode");
        if (c.unsupported) {
            EXPECT_EQ(1, unsupportedLines) << "input: " << c.input << "\n" << capture.Dump();
            EXPECT_TRUE(capture.Has(1, std::string("[repo] Unsupported BBCode, treat as plain text: ") + c.unsupported))
                << "input: " << c.input << "\n" << capture.Dump();
        } else {
            EXPECT_EQ(0, unsupportedLines) << "input: " << c.input << "\n" << capture.Dump();
        }
    }
}

TEST(RBBCodeRendererTest, EachUnsupportedTagIsLoggedOnce)
{
    LogCapture capture;
    EXPECT_EQ("[x]1[/y]2[z=3]", RBBCodeRenderer::Render("[x]1[/y]2[z=3]"));
    EXPECT_EQ(3, capture.Count("Unsupported BBCode"));
    EXPECT_TRUE(capture.Has(1, "[repo] Unsupported BBCode, treat as plain text: y"));
    EXPECT_TRUE(capture.Has(1, "[repo] Unsupported BBCode, treat as plain text: z=3"));
}
