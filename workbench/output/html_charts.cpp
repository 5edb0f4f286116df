#include "workbench/output/html_charts.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "workbench/output/html_table.h"
#include "workbench/output/html_text.h"
#include "workbench/output/phrase.h"
#include "workbench/output/sentences.h"

namespace workbench::output {
namespace {

constexpr std::size_t mostBars = 25;
constexpr double leastShare = 0.006;  // of a part or a bar that is not empty, so that it can be seen
constexpr double stripHeight = 40;

std::string phraseOf(std::string_view pattern, std::vector<double> numbers, const text::Wording& wording) {
  return shownPhrase({std::string(pattern), std::move(numbers)}, wording);
}

std::string numberText(double number, const text::Wording& wording) { return phraseOf("{0}", {number}, wording); }

std::string shareText(double count, double whole, const text::Wording& wording) {
  return whole > 0 ? percentText(count * 100 / whole, wording.forms()) : "";
}

std::string measure(double number) { return fmt::format("{:.3f}", number); }

std::string percentage(double share) { return fmt::format("{:.3f}%", share * 100); }

// The shares of a whole as they are drawn: none that is not empty is too small to be seen.
std::vector<double> drawnShares(const std::vector<double>& counts) {
  const double whole = std::accumulate(counts.begin(), counts.end(), 0.0);
  std::vector<double> shares;
  for (const double count : counts) {
    shares.push_back(count > 0 && whole > 0 ? std::max(leastShare, count / whole) : 0.0);
  }
  const double drawn = std::accumulate(shares.begin(), shares.end(), 0.0);
  for (double& share : shares) share = drawn > 0 ? share / drawn : 0.0;
  return shares;
}

void writeWhole(std::ostream& out, const PartsChart& chart, const PartsChart::Whole& whole, const std::string& id,
                const text::Wording& wording) {
  const HtmlElement row(out, "li");
  writeHtml(out, "span", {{"class", "label"}}, shownPhrase(whole.label, wording));
  {
    const HtmlElement drawing(out, "svg", {{"class", "parts"}, {"role", "img"}, {"aria-labelledby", id}});
    const std::vector<double> shares = drawnShares(whole.counts);
    double start = 0;
    for (std::size_t part = 0; part < shares.size(); ++part) {
      if (shares[part] <= 0) continue;
      writeShape(out, "rect",
                 {{"class", fmt::format("part{}", part)},
                  {"x", percentage(start)},
                  {"width", percentage(shares[part])},
                  {"height", "100%"}});
      start += shares[part];
    }
  }
  const double sum = std::accumulate(whole.counts.begin(), whole.counts.end(), 0.0);
  const HtmlElement legend(out, "p", {{"class", "legend"}, {"id", id}});
  for (std::size_t part = 0; part < whole.counts.size(); ++part) {
    const HtmlElement item(out, "span", {{"class", "item"}});
    {
      const HtmlElement swatch(out, "svg", {{"class", "swatch"}, {"aria-hidden", "true"}});
      writeShape(out, "rect", {{"class", fmt::format("part{}", part)}, {"width", "100%"}, {"height", "100%"}});
    }
    writeHtml(out, "b", {}, numberText(whole.counts[part], wording));
    out << ' ' << htmlEscaped(shownPhrase(chart.parts[part], wording)) << ' ';
    writeHtml(out, "small", {}, shareText(whole.counts[part], sum, wording));
  }
}

void writeChart(std::ostream& out, const PartsChart& chart, const std::string& id, const text::Wording& wording) {
  const HtmlElement list(out, "ul");
  for (std::size_t whole = 0; whole < chart.wholes.size(); ++whole) {
    writeWhole(out, chart, chart.wholes[whole], fmt::format("{}-{}", id, whole), wording);
  }
}

// A bar's name and number stand beside it, so that the drawing itself need not be read out.
void writeBar(std::ostream& out, const BarChart::Bar& bar, const BarChart& chart, const text::Wording& wording) {
  const HtmlElement row(out, "li");
  writeHtml(out, "span", {{"class", "label"}}, shown(bar.label, wording, pageStyle));
  {
    const HtmlElement drawing(out, "svg", {{"class", "bar"}, {"aria-hidden", "true"}});
    writeShape(out, "rect", {{"class", "track"}, {"width", "100%"}, {"height", "100%"}});
    const double share = std::max(leastShare, bar.count / chart.bars.front().count);
    writeShape(out, "rect", {{"class", "fill"}, {"width", percentage(share)}, {"height", "100%"}});
  }
  const HtmlElement number(out, "span", {{"class", "count"}});
  writeHtml(out, "b", {}, numberText(bar.count, wording));
  out << ' ';
  writeHtml(out, "small", {}, shareText(bar.count, chart.whole, wording));
}

void writeChart(std::ostream& out, const BarChart& chart, const std::string&, const text::Wording& wording) {
  const std::size_t shownBars = std::min(mostBars, chart.bars.size());
  {
    const HtmlElement list(out, "ul");
    for (std::size_t bar = 0; bar < shownBars; ++bar) writeBar(out, chart.bars[bar], chart, wording);
  }
  const double left = static_cast<double>(chart.bars.size() - shownBars);
  if (left > 0) writeHtml(out, "p", {{"class", "legend"}}, phraseOf(sentences::moreBars, {left}, wording));
  if (chart.empty > 0) {
    writeHtml(out, "p", {{"class", "legend"}},
              phraseOf(sentences::emptyBars, {static_cast<double>(chart.empty)}, wording));
  }
}

void writeChart(std::ostream& out, const StripChart& chart, const std::string& id, const text::Wording& wording) {
  const auto largest = std::max_element(chart.counts.begin(), chart.counts.end());
  if (largest == chart.counts.end() || *largest <= 0) return;
  const double stretches = static_cast<double>(chart.counts.size());
  {
    const HtmlElement drawing(out, "svg",
                              {{"class", "strip"},
                               {"viewBox", fmt::format("0 0 {} {}", chart.counts.size(), stripHeight)},
                               {"preserveAspectRatio", "none"},
                               {"role", "img"},
                               {"aria-labelledby", id + "-text"}});
    writeShape(out, "rect",
               {{"class", "track"}, {"width", std::to_string(chart.counts.size())}, {"height", measure(stripHeight)}});
    for (std::size_t stretch = 0; stretch < chart.counts.size(); ++stretch) {
      if (chart.counts[stretch] <= 0) continue;
      // A quarter of the height at least: one case among thousands has to be seen as well.
      const double height = stripHeight * (0.25 + 0.75 * chart.counts[stretch] / *largest);
      writeShape(out, "rect",
                 {{"class", "fill"},
                  {"x", std::to_string(stretch)},
                  {"y", measure(stripHeight - height)},
                  {"width", "1"},
                  {"height", measure(height)}});
    }
  }
  {
    const HtmlElement scale(out, "p", {{"class", "scale"}});
    writeHtml(out, "span", {}, phraseOf(sentences::caseNumber, {1}, wording));
    writeHtml(out, "span", {}, phraseOf(sentences::caseNumber, {static_cast<double>(chart.cases)}, wording));
  }
  const std::int64_t at = largest - chart.counts.begin();
  const std::int64_t count = static_cast<std::int64_t>(chart.counts.size());
  const double first = static_cast<double>(at * chart.cases / count + 1);
  const double last = static_cast<double>((at + 1) * chart.cases / count);
  const double filled = static_cast<double>(
      std::count_if(chart.counts.begin(), chart.counts.end(), [](double cases) { return cases > 0; }));
  writeHtml(out, "p", {{"class", "legend"}, {"id", id + "-text"}},
            phraseOf(first == last ? sentences::stripOfCases : sentences::strip,
                     {filled, stretches, *largest, first, last}, wording));
  if (chart.note) writeHtml(out, "p", {{"class", "legend"}}, shownPhrase(*chart.note, wording));
}

std::string_view kindOf(const PartsChart&) { return "parts-chart"; }
std::string_view kindOf(const BarChart&) { return "bar-chart"; }
std::string_view kindOf(const StripChart&) { return "strip-chart"; }

}  // namespace

void writeHtmlChart(std::ostream& out, const Chart& chart, const std::string& id, const text::Wording& wording) {
  std::visit(
      [&](const auto& picture) {
        const HtmlElement figure(out, "figure", {{"class", std::string(kindOf(picture))}});
        writeHtml(out, "figcaption", {}, shownPhrase(picture.title, wording));
        writeChart(out, picture, id, wording);
      },
      chart);
}

void writeHtmlPatterns(std::ostream& out) {
  const HtmlElement drawing(out, "svg", {{"class", "patterns"}, {"aria-hidden", "true"}});
  const HtmlElement definitions(out, "defs");
  {
    const HtmlElement pattern(out, "pattern",
                              {{"id", "hatch"},
                               {"width", "6"},
                               {"height", "6"},
                               {"patternUnits", "userSpaceOnUse"},
                               {"patternTransform", "rotate(45)"}});
    writeShape(out, "rect", {{"class", "hatch-ground"}, {"width", "6"}, {"height", "6"}});
    writeShape(out, "rect", {{"class", "hatch-line"}, {"width", "2"}, {"height", "6"}});
  }
}

}  // namespace workbench::output
