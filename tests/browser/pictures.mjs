// Writes the screenshots of the documentation: node pictures.mjs, with PICTURES naming their folder.
import { mkdirSync, mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

import { launch, missing, open } from "./browser.mjs";
import { demoArguments, writeDemo } from "./reports.mjs";
import { openTerminal } from "./terminal.mjs";

const { PICTURES } = process.env;
const variables = "sex,birth_year,town,education,income,remark";

const pictures = [
  { name: "report-light", colorScheme: "light", width: 1200, height: 1000 },
  { name: "report-dark", colorScheme: "dark", width: 1200, height: 1000 },
  { name: "report-narrow", colorScheme: "light", width: 360, height: 1000 },
  { name: "report-cases", colorScheme: "light", width: 1200, height: 720,
    heading: "Case By Case Comparison" },
];

const terminals = [
  { name: "terminal", columns: 110, args: [...demoArguments, "--variables", variables, "--limit", "4"] },
  { name: "terminal-narrow", columns: 60,
    args: [...demoArguments, "--limit", "4", "--table", "CD_CaseByCaseComparisonTableName"] },
];

const lack = missing();
if (lack) throw new Error(lack);
mkdirSync(PICTURES, { recursive: true });
const folder = mkdtempSync(join(tmpdir(), "compare-datasets-pictures-"));
const report = writeDemo(folder, "report", "--variables", variables);
const browser = await launch();
for (const { name, colorScheme, width, height, heading } of pictures) {
  const { page, context } = await open(browser, report, { colorScheme, viewport: { width, height } });
  if (heading) {
    const place = page.locator("main").getByRole("heading", { name: heading });
    await place.evaluate((element) => element.scrollIntoView({ behavior: "instant" }));
  }
  await page.screenshot({ path: join(PICTURES, `${name}.png`) });
  await context.close();
}
for (const { name, columns, args } of terminals) {
  const page = await openTerminal(browser, args, columns);
  await page.locator("#screen").screenshot({ path: join(PICTURES, `${name}.png`) });
  await page.close();
}
await browser.close();
rmSync(folder, { recursive: true });
