// What a terminal shows of a run of the program, drawn by a terminal emulator on a page.
import { spawnSync } from "node:child_process";

import { packages } from "./browser.mjs";

const { PROGRAM, EXAMPLES } = process.env;
const emulator = packages.resolve("@xterm/xterm");
const style = packages.resolve("@xterm/xterm/css/xterm.css");
const theme = {
  background: "#14181d", foreground: "#d8dee6", black: "#14181d", red: "#ff7b72", green: "#7ee787", yellow: "#e3b341",
  blue: "#79c0ff", magenta: "#d2a8ff", cyan: "#76d9e6", white: "#d8dee6", brightBlack: "#8b949e",
};

// A page of so many columns with the shell's line and all that the run wrote; the element that shows it is "#screen".
export async function openTerminal(browser, args, columns) {
  const run = spawnSync(PROGRAM, [...args, "--color", "always"], {
    cwd: EXAMPLES, encoding: "utf8", env: { ...process.env, LC_ALL: "C.UTF-8", COLUMNS: String(columns) },
  });
  if (![0, 1].includes(run.status)) throw new Error(`status ${run.status}\n${run.stderr}`);
  const text = `$ compare-datasets ${args.join(" ")}\n${run.stdout}`.trimEnd();
  const page = await browser.newPage({ viewport: { width: 1600, height: 400 } });
  await page.setContent('<body style="margin:0;background:#14181d"><div id="screen" style="display:inline-block;padding:16px"></div>');
  await page.addStyleTag({ path: style });
  await page.addScriptTag({ path: emulator });
  const shellLine = text.indexOf("\n");  // the one line that may be longer than the window
  const rows = text.split("\n").length + Math.ceil(shellLine / columns) - 1;
  await page.setViewportSize({ width: 1600, height: rows * 24 + 100 });
  await page.evaluate(async ({ text, columns, rows, theme }) => {
    const terminal = new Terminal({
      cols: columns, rows, convertEol: true, fontSize: 14, lineHeight: 1.2, fontFamily: "DejaVu Sans Mono, monospace", theme,
      cursorInactiveStyle: "none", scrollback: 0,
    });
    terminal.open(document.getElementById("screen"));
    await new Promise((resolve) => terminal.write(text, resolve));
    await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
  }, { text, columns, rows, theme });
  return page;
}
