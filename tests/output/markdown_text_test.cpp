#include "workbench/output/markdown_text.h"

#include <gtest/gtest.h>

namespace workbench::output {
namespace {

struct Escape {
  const char* text;
  const char* page;
};

TEST(MarkdownText, LeavesNothingThatActsOnThePage) {
  const Escape cases[] = {
      {"plain text, with (brackets) and 1.5 - 2", "plain text, with (brackets) and 1.5 - 2"},
      {"a|b", "a\\|b"},
      {"back\\slash", "back\\\\slash"},
      {"`code` *bold* ~~gone~~ [link](x) ![picture](x)",
       "\\`code\\` \\*bold\\* \\~\\~gone\\~\\~ \\[link\\](x) !\\[picture\\](x)"},
      {"<script>&amp;", "&lt;script&gt;&amp;amp;"},
      {"two\nlines", "two<br>lines"},
      {"birth_year _emphasis_ a__b", "birth_year \\_emphasis\\_ a\\_\\_b"},
      {"@someone and a@b.org, 5 @ 2", "@<!-- -->someone and a@<!-- -->b.org, 5 @ 2"},
      {"#12 # heading", "\\#<!-- -->12 \\# heading"},
      {"https://example.org www.example.org WWW.x",
       "https:<!-- -->//example.org www.<!-- -->example.org WWW.<!-- -->x"},
      {":smile: 15:59:55 :100:", ":<!-- -->smile: 15:59:55 :<!-- -->100:"},
      {"$5", "$5"},
      {"$5 and $6", "<span>$</span>5 and <span>$</span>6"},
      {" a  b ", "&nbsp;a &nbsp;b&nbsp;"},
      {"a\x1b[2J\xFF", "a\u241B\\[2J\uFFFD"},
      {"abc\u202Ecba", "abc&lt;U+202E&gt;cba"},
      {"", ""},
  };
  for (const Escape& one : cases) EXPECT_EQ(markdownText(one.text), one.page) << one.text;
}

TEST(MarkdownText, BeginsNoListAndNoHeadingInAParagraph) {
  const Escape cases[] = {
      {"- item", "\\- item"},
      {"+ item", "\\+ item"},
      {"* item", "\\* item"},
      {"1. item", "1\\. item"},
      {"23) item", "23\\) item"},
      {"=====", "\\====="},
      {"# heading", "\\# heading"},
      {"> quotation", "&gt; quotation"},
      {"    code", "&nbsp;&nbsp;&nbsp;&nbsp;code"},
      {"1.5 is a number", "1\\.5 is a number"},
      {"text - more", "text - more"},
  };
  for (const Escape& one : cases) EXPECT_EQ(markdownParagraph(one.text), one.page) << one.text;
}

}  // namespace
}  // namespace workbench::output
