// Chromium, driven through the pinned packages: one browser for all pages.
import { existsSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";

const { PACKAGES } = process.env;
const chromiumPaths = ["/usr/bin/chromium", "/usr/bin/chromium-browser"];

export const packages = createRequire(join(PACKAGES, "package.json"));

// What is missing for a browser, or nothing.
export function missing() {
  if (!chromiumPaths.some(existsSync)) return "there is no Chromium";
  if (!existsSync(join(PACKAGES, "node_modules"))) return `there are no packages in ${PACKAGES}`;
  return null;
}

export function launch() {
  const executablePath = chromiumPaths.find(existsSync);
  return packages("playwright-core").chromium.launch({ executablePath, args: ["--no-sandbox", "--disable-gpu"] });
}

// A page of the report, and all that it said or asked for beside the report itself.
export async function open(browser, path, { settle = true, ...options } = {}) {
  const context = await browser.newContext({ offline: false, ...options });
  context.setDefaultTimeout(120_000);  // a machine that does other work takes its time
  const page = await context.newPage();
  const url = `file://${path}`;
  const complaints = [];
  page.on("console", (message) => complaints.push(`console: ${message.text()}`));
  page.on("pageerror", (error) => complaints.push(`error: ${error.message}`));
  page.on("request", (request) => request.url() !== url && complaints.push(`request: ${request.url()}`));
  page.on("dialog", (dialog) => complaints.push(`dialog: ${dialog.message()}`) && dialog.dismiss());
  await page.goto(url);
  return { page, context, complaints };
}
