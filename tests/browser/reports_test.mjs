// HTML reports in Chromium: silent, without requests, accessible, valid; with scripts and without, in light and dark,
// narrow and on paper; and what the script adds.
import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { readFileSync, rmSync } from "node:fs";
import { after, before, test } from "node:test";

import { launch, missing, open, packages } from "./browser.mjs";
import { writeReports } from "./reports.mjs";

const lack = missing();
if (lack) {
  console.log(`skipped: ${lack}; ./dev browser installs it`);
  process.exit(77);
}

const { folder, paths } = writeReports();
const axe = readFileSync(packages.resolve("axe-core/axe.min.js"), "utf8");
let browser;

before(async () => {
  browser = await launch();
});

after(async () => {
  await browser?.close();
  rmSync(folder, { recursive: true });
});

async function withPage(name, options, act) {
  const opened = await open(browser, paths.get(name), options);
  try {
    await act(opened.page, opened.complaints);
    assert.deepEqual(opened.complaints, []);
  } finally {
    await opened.context.close();
  }
}

// axe-core is put in by the browser and not by the page, which forbids it.
async function findings(page, rules) {
  await page.evaluate(axe);
  const { violations } = await page.evaluate((only) => window.axe.run(document, only), rules);
  return violations.map((rule) => `${rule.id}: ${rule.help}: ${rule.nodes.map((node) => node.html).slice(0, 3)}`);
}

function widerThanWindow() {
  const { scrollWidth, clientWidth } = document.documentElement;
  return scrollWidth > clientWidth ? `${scrollWidth} > ${clientWidth}` : null;
}

for (const [name, path] of paths) {
  test(`${name} is silent, asks for nothing, fits the window and has no accessibility finding`, () =>
    withPage(name, { colorScheme: "light" }, async (page) => {
      assert.ok((await page.locator("h1").innerText()).length > 0);
      assert.equal(await page.evaluate(widerThanWindow), null);
      assert.deepEqual(await findings(page, {}), []);
    }));

  test(`${name} can be read in the dark and at 360 pixels`, () =>
    withPage(name, { colorScheme: "dark", viewport: { width: 360, height: 740 } }, async (page) => {
      assert.equal(await page.evaluate(widerThanWindow), null);
      assert.deepEqual(await findings(page, { runOnly: ["color-contrast"] }), []);
    }));

  test(`${name} is silent without scripts`, () =>
    withPage(name, { javaScriptEnabled: false }, async (page) => {
      assert.equal(await page.locator("button, select").count(), 0);
    }));

  test(`${name} is valid HTML`, async () => {
    const { HtmlValidate } = packages("html-validate");
    // Texts of data may end in blanks; they are shown as they are. The title's length is counted with what escapes it.
    const rules = { "no-trailing-whitespace": "off", "long-title": "off" };
    const validator = new HtmlValidate({ extends: ["html-validate:recommended"], rules });
    const { results } = await validator.validateFile(path);
    const messages = results.flatMap((result) => result.messages);
    assert.deepEqual(messages.slice(0, 5).map(({ ruleId, message, line }) => `${line}: ${ruleId}: ${message}`), []);
  });

  test(`${name} allows its one style sheet and its one script by their hashes and nothing else`, () => {
    const html = readFileSync(path, "utf8");
    const hashOf = (part) => {
      const texts = [...html.matchAll(new RegExp(`<${part}>([^]*?)</${part}>`, "g"))].map((match) => match[1]);
      assert.equal(texts.length, 1);
      return `'sha256-${createHash("sha256").update(texts[0]).digest("base64")}'`;
    };
    const policy = html.match(/<meta http-equiv="Content-Security-Policy" content="([^"]*)">/)[1].replaceAll("&#39;", "'");
    assert.deepEqual(policy.split("; "), ["default-src 'none'", `style-src ${hashOf("style")}`,
      `script-src ${hashOf("script")}`, "base-uri 'none'", "form-action 'none'"]);
  });
}

test("The page's policy keeps anything else from running", () =>
  withPage("demo", {}, async (page, complaints) => {
    await page.evaluate(() => {
      const script = document.createElement("script");
      script.textContent = "window.wasRun = true";
      document.body.append(script);
    });
    assert.equal(await page.evaluate(() => window.wasRun), undefined);
    assert.match(complaints.splice(0).join(), /Content Security Policy/);
  }));

test("The answer stands first, under the heading", () =>
  withPage("demo", { javaScriptEnabled: false }, async (page) => {
    const text = await page.locator("header").innerText();
    assert.match(text, /^Compare Datasets\s+≠\s*Different\s+\d+ of 494 compared cases differ, in \d+ of \d+ variables; 3 cases/);
  }));

test("Every entry of the contents leads to a heading", () =>
  withPage("job", {}, async (page) => {
    const targets = await page.locator("nav a").evaluateAll((links) => links.map((link) => link.hash.slice(1)));
    assert.ok(targets.length > 10);
    for (const id of targets) assert.match(await page.locator(`[id="${id}"]`).evaluate((element) => element.tagName), /^H[23]$/);
  }));

test("Hostile names and values are shown as text", () =>
  withPage("hostile_files", {}, async (page) => {
    const main = await page.locator("main").innerText();
    assert.ok(main.includes(`</td><script>alert(1)</script>"&'=1+1`));
    assert.ok(main.includes("(1) <b>"));
    assert.equal(await page.locator("main script, main img, main i").count(), 0);
  }));

test("On paper all rows and columns of a table are there, and no control", () =>
  withPage("demo", { viewport: { width: 1017, height: 700 } }, async (page) => {
    await page.emulateMedia({ media: "print" });
    assert.equal(await page.locator(".tools").first().isVisible(), false);
    assert.equal(await page.locator("nav").isVisible(), false);
    const cut = await page.locator(".scroll").evaluateAll((boxes) => boxes.filter((box) =>
      box.scrollHeight > box.clientHeight + 1 || box.scrollWidth > box.clientWidth + 1).map((box) => box.innerText.slice(0, 80)));
    assert.deepEqual(cut, []);
  }));

test("The keyboard reaches the results, every table and what the script adds", () =>
  withPage("demo", {}, async (page) => {
    await page.keyboard.press("Tab");
    assert.equal(await page.evaluate(() => document.activeElement.textContent), "Skip to the results");
    await page.keyboard.press("Enter");
    assert.equal(await page.evaluate(() => location.hash), "#results");
    const wanted = await page.locator("main button, main select, main .scroll, main a").count();
    const reached = new Set();
    for (let step = 0; step < wanted; ++step) {
      await page.keyboard.press("Tab");
      reached.add(await page.evaluate(() => {
        const all = [...document.querySelectorAll("main button, main select, main .scroll, main a")];
        return all.indexOf(document.activeElement);
      }));
    }
    assert.equal(reached.size, wanted);
    assert.ok(!reached.has(-1));
  }));

const caseTable = "section.table:has(h2:text-is('Case By Case Comparison'))";

test("Rows can be filtered to those that differ in one variable", () =>
  withPage("demo", {}, async (page) => {
    const section = page.locator(caseTable);
    const rows = section.locator("tbody tr:visible");
    const all = await rows.count();
    const select = section.locator("select");
    await select.selectOption({ label: await select.locator("option", { hasText: "town" }).innerText() });
    const shown = await rows.count();
    assert.ok(shown > 0 && shown < all, `${shown} of ${all}`);
    assert.equal(await section.locator("output").innerText(), `${shown} of ${all} rows`);
    const column = await select.inputValue();
    for (let row = 0; row < shown; ++row) {
      const text = await rows.nth(row).locator("th, td").nth(Number(column)).innerText();
      assert.match(text, /^\(1\) .*\n\(2\) /);
    }
    await select.selectOption({ index: 0 });
    assert.equal(await rows.count(), all);
  }));

test("Rows can be sorted by a column, the other way, and back", () =>
  withPage("demo", {}, async (page) => {
    const section = page.locator("section.table:has(h2:text-is('Mismatched By Variables'))");
    const header = section.locator("th", { hasText: "Count" });
    const counts = async () => (await section.locator("tbody td:nth-child(2)").allInnerTexts()).map(Number);
    const asMade = await counts();
    await header.locator("button").click();
    assert.equal(await header.getAttribute("aria-sort"), "ascending");
    assert.deepEqual(await counts(), [...asMade].sort((left, right) => left - right));
    await header.locator("button").press("Enter");
    assert.equal(await header.getAttribute("aria-sort"), "descending");
    assert.deepEqual(await counts(), [...asMade].sort((left, right) => right - left));
    await header.locator("button").click();
    assert.equal(await header.getAttribute("aria-sort"), null);
    assert.deepEqual(await counts(), asMade);
  }));

test("The rows that are shown can be copied for a spreadsheet, and no text as a formula", () =>
  withPage("hostile_files", { permissions: ["clipboard-read", "clipboard-write"] }, async (page) => {
    const section = page.locator(caseTable);
    await section.locator("select").selectOption({ index: 1 });
    const shown = await section.locator("tbody tr:visible").count();
    await section.getByRole("button", { name: "Copy the table" }).click();
    await section.locator("output", { hasText: "Copied" }).waitFor();
    const text = await page.evaluate(() => navigator.clipboard.readText());
    assert.match(text, /"\(1\) =1\+1\n\(2\) =2\+2"/);
    assert.match(text, /\t'=cmd/);
    assert.equal(text.match(/\(1\)/g).length >= shown, true);
    const widths = text.replace(/\n$/, "").replaceAll(/"(?:[^"]|"")*"/g, "x").split("\n").map((line) => line.split("\t").length);
    assert.equal(new Set(widths).size, 1, widths.join());
  }));

test("A cell that differs is marked by more than a colour", () =>
  withPage("demo", { forcedColors: "active" }, async (page) => {
    const width = await page.locator("td.differs").first().evaluate((cell) => getComputedStyle(cell).borderLeftWidth);
    assert.equal(width, "3px");
    assert.match(await page.locator("td.differs").first().innerText(), /^\(1\) .*\n\(2\) /);
  }));
