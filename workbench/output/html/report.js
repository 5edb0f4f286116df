// What the HTML report adds where scripts run: rows of a table sorted, filtered and copied. Everything is there without.
"use strict";

const words = document.querySelector("main").dataset;
const collator = new Intl.Collator(document.documentElement.lang, { numeric: true });

for (const table of document.querySelectorAll("section.table table")) {
  equip(table);
}

function equip(table) {
  const tools = document.createElement("div");
  tools.className = "tools";
  const state = document.createElement("output");
  if (table.dataset.tools) {
    table.rowsAsMade = [...table.tBodies[0].rows];
    addSorting(table);
    addFilter(table, tools, state);
  }
  addCopying(table, tools, state);
  tools.append(state);
  table.parentElement.before(tools);
}

// Every header of a single column becomes a button: ascending, descending, as made.

function addSorting(table) {
  for (const header of table.querySelectorAll("th[data-column]")) {
    const button = document.createElement("button");
    button.type = "button";
    const marks = [...header.querySelectorAll("sup")];
    marks.forEach((mark) => mark.remove());
    button.textContent = header.textContent.trim();
    header.replaceChildren(button, ...marks);
    button.addEventListener("click", () => sortBy(table, header));
  }
}

const nextOrder = { none: "ascending", ascending: "descending", descending: "none" };

function sortBy(table, header) {
  const order = nextOrder[header.getAttribute("aria-sort") ?? "none"];
  table.querySelectorAll("th[aria-sort]").forEach((other) => other.removeAttribute("aria-sort"));
  const rows = [...table.rowsAsMade];
  if (order !== "none") {
    header.setAttribute("aria-sort", order);
    const sign = order === "ascending" ? 1 : -1;
    const keys = new Map(rows.map((row) => [row, sortKey(row.cells[header.dataset.column])]));
    rows.sort((left, right) => compare(keys.get(left), keys.get(right), sign));
  }
  table.tBodies[0].append(...rows);
}

function sortKey(cell) {
  const text = cell.dataset.value ?? cell.firstChild?.textContent ?? "";
  const number = text.trim() === "" ? NaN : Number(text);
  return { text, number };
}

// Numbers before texts; what is empty or missing last, in either order.
function compare(left, right, sign) {
  const rank = (key) => (key.text === "" || key.text === "." ? 2 : Number.isNaN(key.number) ? 1 : 0);
  if (rank(left) !== rank(right)) return rank(left) - rank(right);
  if (rank(left) === 0) return sign * (left.number - right.number);
  return rank(left) === 1 ? sign * collator.compare(left.text, right.text) : 0;
}

// A table with cells of several values can show the rows alone that have them in one column.

function addFilter(table, tools, state) {
  const headers = [...table.querySelectorAll("th[data-differing]")];
  if (headers.length === 0) return;
  const select = document.createElement("select");
  select.append(new Option(words.all, ""));
  for (const header of headers) {
    select.append(new Option(`${headerText(header)} (${header.dataset.differing})`, header.dataset.column));
  }
  select.addEventListener("change", () => {
    let shown = 0;
    for (const row of table.rowsAsMade) {
      row.hidden = select.value !== "" && !row.cells[select.value].classList.contains("differs");
      shown += row.hidden ? 0 : 1;
    }
    state.textContent = words.shown.replace("{0}", shown).replace("{1}", table.rowsAsMade.length);
  });
  const label = document.createElement("label");
  label.append(words.filter, select);
  tools.append(label);
}

function headerText(header) {
  return (header.querySelector("button") ?? header).textContent.trim();
}

// The rows that are shown, as values between tabs, with a column for every column.

function addCopying(table, tools, state) {
  const button = document.createElement("button");
  button.type = "button";
  button.textContent = words.copy;
  button.addEventListener("click", async () => {
    state.textContent = (await copied(tabbed(table))) ? words.copied : words.notCopied;
  });
  tools.append(button);
}

function tabbed(table) {
  const lines = [];
  const taken = new Map(); // what a cell covers of the rows below its own
  [...table.rows].filter((row) => !row.hidden).forEach((row, number) => {
    const line = [];
    const put = (column, text) => { line[column] = text; };
    const free = () => {
      let column = 0;
      while (line[column] !== undefined || taken.has(`${number} ${column}`)) {
        if (line[column] === undefined) put(column, taken.get(`${number} ${column}`));
        ++column;
      }
      return column;
    };
    for (const cell of row.cells) {
      const column = free();
      const text = fieldText(cell);
      for (let right = 0; right < cell.colSpan; ++right) {
        put(column + right, right === 0 ? text : "");
        for (let down = 1; down < cell.rowSpan; ++down) taken.set(`${number + down} ${column + right}`, "");
      }
    }
    free();
    lines.push(line.join("\t"));
  });
  return lines.join("\n") + "\n";
}

// A text that a spreadsheet would take for a formula gets an apostrophe before it; one of several lines gets quotes.
function fieldText(cell) {
  let text = cell.tagName === "TH" ? headerText(cell) : cell.textContent;
  if (/^[=+\-@]/.test(text) && Number.isNaN(Number(text))) text = "'" + text;
  return /[\t\n"]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
}

async function copied(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    return copiedBySelection(text);
  }
}

function copiedBySelection(text) {
  const area = document.createElement("textarea");
  area.value = text;
  area.className = "unseen";
  document.body.append(area);
  area.select();
  const done = document.execCommand("copy");
  area.remove();
  return done;
}
