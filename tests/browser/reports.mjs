// Reports for the tests in the browser and for the pictures of the documentation: written by the program, into a folder.
import { execFileSync, spawnSync } from "node:child_process";
import { mkdtempSync, readdirSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, join } from "node:path";

const { PROGRAM, SAMPLES, EXAMPLES, EXAMPLE_PLUGINS } = process.env;
const environment = { ...process.env, LC_ALL: "C.UTF-8", SOURCE_DATE_EPOCH: "1795305600" };

// The path of the report that the command writes; its status has to be one of an honest comparison, or the one given.
function report(folder, name, args, { cwd = EXAMPLES, statuses = [0, 1] } = {}) {
  const path = join(folder, `${name}.html`);
  const run = spawnSync(PROGRAM, [...args, "-o", path], { cwd, env: environment, encoding: "utf8" });
  if (!statuses.includes(run.status)) throw new Error(`${name}: status ${run.status}\n${run.stderr}`);
  return path;
}

export const demoArguments = ["compare", "entry1.csv", "entry2.csv", "--id", "id"];

export function writeDemo(folder, name, ...more) {
  return report(folder, name, [...demoArguments, ...more]);
}

// Numbers that look random and are the same each time.
function* pseudoRandom(seed) {
  for (let state = seed; ; ) {
    state = (state * 1103515245 + 12345) % 2147483648;
    yield state / 2147483648;
  }
}

// Two files of so many cases and variables; a differing value now and then, most of them in one place.
export function writeLargeFiles(folder, cases, variables) {
  const random = pseudoRandom(7);
  const names = ["id", ...Array.from({ length: variables }, (_, index) => `v${index + 1}`)];
  const first = [names.join(",")];
  const second = [names.join(",")];
  for (let number = 1; number <= cases; ++number) {
    const values = Array.from({ length: variables }, () => Math.floor(random.next().value * 1000));
    if (number % 97 !== 0) first.push([number, ...values].join(","));
    if (number > cases * 0.6 && number < cases * 0.7 || random.next().value < 0.02) {
      values[Math.floor(random.next().value ** 3 * variables)] += 1;
    }
    if (number % 61 !== 0) second.push([number, ...values].join(","));
  }
  writeFileSync(join(folder, "large1.csv"), first.join("\n") + "\n");
  writeFileSync(join(folder, "large2.csv"), second.join("\n") + "\n");
}

const hostile = '</td><script>alert(1)</script>"&\'=1+1';

// All reports: path by name.
export function writeReports() {
  const folder = mkdtempSync(join(tmpdir(), "compare-datasets-browser-"));
  const paths = new Map();
  const add = (path) => paths.set(basename(path, ".html"), path);
  add(writeDemo(folder, "demo"));
  add(writeDemo(folder, "demo_german", "--lang", "de"));
  add(writeDemo(folder, "one_table", "--table", "CD_MismatchedByVarsTableName"));
  add(report(folder, "same", ["compare", "entry1.csv", "entry1.csv", "--id", "id"]));
  add(report(folder, "refused", ["compare", "entry1.csv", "entry2.csv", "--id", "nothing"], { statuses: [2] }));
  add(report(folder, "described", ["describe", "entry1.csv"]));

  writeLargeFiles(folder, 2000, 30);
  const large = ["compare", "large1.csv", "large2.csv", "--id", "id", "--limit", "none"];
  add(report(folder, "large", large, { cwd: folder }));

  writeFileSync(join(folder, "h1.csv"), `id,"${hostile.replaceAll('"', '""')}",=cmd\n1,a,<b>\n2,"=1+1",x\n3,-5 cm,y\n`);
  writeFileSync(join(folder, "h2.csv"), `id,"${hostile.replaceAll('"', '""')}",=cmd\n1,b,<i>\n2,"=2+2",x\n3,-6 cm,y\n`);
  add(report(folder, "hostile_files", ["compare", "h1.csv", "h2.csv", "--id", "id"], { cwd: folder }));

  writeFileSync(join(folder, "job.txt"), [
    `OPEN DATA FILE='${join(EXAMPLES, "entry1.csv")}' NAME=first.`,
    `OPEN DATA FILE='${join(EXAMPLES, "entry2.csv")}' NAME=second.`,
    "ACTIVATE DATASET NAME=first.",
    "COMPARE DATASETS /COMPDATASET=second /VARIABLES=ALL /CASEID=id.",
    "COMPARE DATASETS /COMPDATASET=second /VARIABLES=sex /OUTPUT CASETABLE=NO.",
    "COMPARE DATASETS /VARIABLES=ALL.",
    "NO SUCH COMMAND.",
    "COUNT MISSING /VARIABLES=ALL /OUTPUT PERCENT=YES.",
    "DESCRIBE DATA.",
    "",
  ].join("\n"));
  add(report(folder, "job", ["--plugins", EXAMPLE_PLUGINS, "run", "job.txt"], { cwd: folder, statuses: [2] }));
  writeFileSync(join(folder, "empty.txt"), "");
  add(report(folder, "empty_job", ["run", "empty.txt"], { cwd: folder }));

  const samples = mkdtempSync(join(folder, "samples-"));
  execFileSync(SAMPLES, [samples]);
  for (const name of readdirSync(samples)) paths.set(`sample ${basename(name, ".html")}`, join(samples, name));
  return { folder, paths };
}
