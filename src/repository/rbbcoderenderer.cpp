#include "rbbcoderenderer.h"

#include "xmodule/rlog.h"

#include <algorithm>

namespace kestro {
namespace repository {

namespace {

typedef std::string::size_type Pos;

const Pos kNone = std::string::npos;

// Tags whose whole text is fixed: the word with its "]" and what each form becomes.
struct SimpleTag {
    const char* text;
    const char* opening;
    const char* closing;
};

const SimpleTag kSimpleTags[] = {
    {"b]", "<b>", "</b>"},
    {"i]", "<i>", "</i>"},
    {"s]", "<s>", "</s>"},
    {"u]", "<u>", "</u>"},
    {"img]", "<img src=\"", "\"/>"},
};

// Tags that carry a value; their closing form skips the word and one character more.
enum ValueTagKind { kUrl, kColor, kSize };

struct ValueTag {
    const char* word;
    ValueTagKind kind;
    const char* closing;
};

const ValueTag kValueTags[] = {
    {"url", kUrl, "</a>"},
    {"color", kColor, "</span>"},
    {"size", kSize, "</span>"},
};

bool StartsWith(const std::string& text, Pos at, const char* word)
{
    return text.compare(at, std::char_traits<char>::length(word), word) == 0;
}

class Pass {
public:
    explicit Pass(const std::string& text) : text(text) { out.reserve(text.size()); }

    std::string Run()
    {
        while (!finished && i < text.size()) {
            CopyPlainText();
            if (i < text.size()) ReadBracket();
        }
        return out;
    }

private:
    void CopyPlainText()
    {
        const Pos bracket = std::min(text.find('[', i), text.size());
        out.append(text, i, bracket - i);
        i = bracket;
    }

    void ReadBracket()
    {
        ++i;
        closing = i < text.size() && text[i] == '/';
        if (closing) ++i;
        const char* prefix = closing ? "[/" : "[";

        // The first "]" counts only when no "[" stands before it.
        const Pos next = text.find('[', i);
        const Pos end = next == kNone ? text.size() : next;
        const Pos found = std::find(text.begin() + i, text.begin() + end, ']') - text.begin();
        close = found == end ? kNone : found;
        nextBracket = next;

        if (close == kNone && next == kNone) {
            out.append(prefix).append(text, i, kNone);
            finished = true;
        } else if (close == kNone) {
            out.append(prefix).append(text, i, next - i);
            i = next;
        } else if (!RenderTag()) {
            KeepUnsupported(prefix);
        }
    }

    bool RenderTag()
    {
        for (size_t t = 0; t < sizeof kSimpleTags / sizeof kSimpleTags[0]; ++t) {
            if (!StartsWith(text, i, kSimpleTags[t].text)) continue;
            out.append(closing ? kSimpleTags[t].closing : kSimpleTags[t].opening);
            i = close + 1;
            return true;
        }
        for (size_t t = 0; t < sizeof kValueTags / sizeof kValueTags[0]; ++t) {
            const ValueTag& tag = kValueTags[t];
            if (!StartsWith(text, i, tag.word)) continue;
            const Pos behind = i + std::char_traits<char>::length(tag.word);
            if (closing) {
                out.append(tag.closing);
                i = behind + 1;
                return true;
            }
            return tag.kind == kUrl ? RenderUrl(behind) : RenderSpan(tag.kind, behind);
        }
        return false;
    }

    bool RenderUrl(Pos behind)
    {
        if (text[behind] == ']' && nextBracket == kNone) {
            // Nothing left to close the link: the rest of the text is both target and link text.
            const std::string target = text.substr(behind + 1);
            out.append("<a href=\"").append(target).append("\">").append(target).append("</a>");
            finished = true;
            return true;
        }
        if (text[behind] == ']') {
            // The target stays in the text after the tag and becomes the link's text.
            out.append("<a href=\"").append(text, behind + 1, nextBracket - behind - 1).append("\">");
            i = close + 1;
            return true;
        }
        if (text[behind] == '=') {
            out.append("<a href=\"").append(text, behind + 1, close - behind - 1).append("\">");
            i = close + 1;
            return true;
        }
        return false;
    }

    bool RenderSpan(ValueTagKind kind, Pos behind)
    {
        if (text[behind] != '=') return false;
        out.append(kind == kColor ? "<span style=\"color:" : "<span style=\"font-size:")
            .append(text, behind + 1, close - behind - 1)
            .append(kind == kColor ? "\">" : "px\">");
        i = close + 1;
        return true;
    }

    void KeepUnsupported(const char* prefix)
    {
        const std::string tag = text.substr(i, close - i);
        RLOG(1) << "Unsupported BBCode, treat as plain text: " << tag;
        out.append(prefix).append(tag).append("]");
        i = close + 1;
    }

    const std::string& text;
    std::string out;
    Pos i = 0;
    bool finished = false;
    bool closing = false;
    Pos close = kNone;
    Pos nextBracket = kNone;
};

}  // namespace

std::string RBBCodeRenderer::Render(const std::string& text)
{
    return Pass(text).Run();
}

}  // namespace repository
}  // namespace kestro
