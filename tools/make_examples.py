#!/usr/bin/env python3
"""Writes examples/entry1.csv and entry2.csv: the same 500 questionnaires, typed in twice by two people.

Both made the mistakes that people make at such work; none is random noise. The seed is fixed, so the files are the same
every time.
"""

import csv
import datetime
import pathlib
import random

QUESTIONNAIRES = 500
MISSED_BY_EACH = 3

ITEMS = [f"item{number}" for number in range(1, 7)]
VARIABLES = (
    ["id", "interview_date", "start_time", "interviewer", "sex", "birth_year", "town", "education", "household", "hours"]
    + ["income", "height", "weight"]
    + ITEMS
    + ["remark"]
)
TOWNS = ["Aalst", "Antwerp", "Bruges", "Brussels", "Charleroi", "Dendermonde", "Genk", "Ghent", "Hasselt", "Kortrijk"]
TOWNS += ["Leuven", "Liège", "Mechelen", "Mons", "Namur", "Ostend", "Sint-Niklaas", "Tournai", "Turnhout", "Verviers"]
INTERVIEWERS = ["AD", "BV", "KJ", "LM", "RP"]
REMARKS = [
    "respondent was in a hurry",
    "partner answered the last page",
    'says "it depends" to most items',
    "works nights, slept badly",
    "income estimated, pay slip not at hand",
    "child present during the interview",
    "moved house last month",
    "asked to be called back",
    "hard of hearing; items read out twice",
]
# The keys that lie beside a key: on the number pad, and on a row of letters.
BESIDE_DIGIT = {"1": "24", "2": "135", "3": "26", "4": "157", "5": "2468", "6": "359", "7": "48", "8": "579", "9": "68", "0": "12"}
LETTER_ROWS = ["qwertyuiop", "asdfghjkl", "zxcvbnm"]


def questionnaire(chance, number):
    day = datetime.date(2026, 3, 2) + datetime.timedelta(days=chance.randrange(110))
    height = chance.gauss(171, 9)
    answers = {
        "id": str(1000 + number),
        "interview_date": day.isoformat(),
        "start_time": f"{chance.randint(9, 19):02}:{chance.randrange(60):02}:{chance.randrange(60):02}",
        "interviewer": chance.choice(INTERVIEWERS),
        "sex": chance.choice("12"),
        "birth_year": str(chance.randint(1938, 2007)),
        "town": chance.choice(TOWNS),
        "education": str(chance.choices(range(1, 7), [4, 9, 25, 28, 22, 12])[0]),
        "household": str(chance.choices(range(1, 8), [30, 34, 15, 13, 5, 2, 1])[0]),
        "hours": str(chance.choice([0, 0, 19, 20, 24, 30, 32, 36, 38, 38, 38, 40, 42, 45])),
        "income": f"{chance.lognormvariate(7.6, 0.4):.2f}" if chance.random() > 0.08 else "",
        "height": f"{height:.0f}",
        "weight": f"{(height / 100) ** 2 * chance.gauss(25, 3.2):.1f}",
        "remark": chance.choice(REMARKS) if chance.random() < 0.25 else "",
    }
    mood = chance.uniform(1.5, 4.5)
    for item in ITEMS:
        answers[item] = str(min(5, max(1, round(chance.gauss(mood, 1)))))
    return answers


# The mistakes. Each changes a copy of the answers as a tired typist would, or leaves it as it was where it cannot.


def transposed_digits(chance, answers):
    variable = chance.choice(["birth_year", "income", "income", "weight"])
    text = answers[variable]
    places = [at for at in range(len(text) - 1) if text[at : at + 2].isdigit() and text[at] != text[at + 1]]
    if places:
        at = chance.choice(places[1:] or places)
        answers[variable] = text[:at] + text[at + 1] + text[at] + text[at + 2 :]


def key_beside(chance, answers):
    variable = chance.choice(["birth_year", "income", "hours", "height", "weight", "household", "start_time"])
    text = answers[variable]
    if text:
        at = len(text) - 1
        answers[variable] = text[:at] + chance.choice(BESIDE_DIGIT[text[at]])


def other_code(chance, answers):
    variable = chance.choice(["sex", "education"])
    answers[variable] = {"sex": {"1": "2", "2": "1"}}.get(variable, {}).get(answers[variable]) or str(
        int(answers[variable]) % 6 + 1
    )


def neighbouring_answer(chance, answers):
    item = chance.choice(ITEMS)
    answers[item] = str(int(answers[item]) + (1 if answers[item] < "5" else -1))


def skipped_item(chance, answers):
    answers[chance.choice(ITEMS[:-1])] = ""


def shifted_items(chance, answers):
    first = chance.randrange(3)
    for here, following in zip(ITEMS[first:], ITEMS[first + 1 :]):
        answers[here] = answers[following]
    answers[ITEMS[-1]] = ""


def misspelt_town(chance, answers):
    town = answers["town"]
    at = chance.randrange(1, len(town) - 1)
    answers["town"] = chance.choice(
        [town[:at] + town[at + 1 :], town[:at] + town[at] + town[at:], town[:at] + letter_beside(chance, town[at]) + town[at + 1 :]]
    )


def letter_beside(chance, letter):
    for row in LETTER_ROWS:
        if letter in row:
            at = row.index(letter)
            return chance.choice(row[max(0, at - 1) : at] + row[at + 1 : at + 2])
    return letter


def trailing_blank(chance, answers):
    answers["town"] += " "


def day_and_month_swapped(chance, answers):
    year, month, day = answers["interview_date"].split("-")
    if int(day) <= 12:
        answers["interview_date"] = f"{year}-{day}-{month}"


def decimal_point_slipped(chance, answers):
    if answers["income"]:
        whole, decimals = answers["income"].split(".")
        answers["income"] = f"{whole}{decimals[0]}.{decimals[1]}0"


def remark_left_out(chance, answers):
    answers["remark"] = ""


def remark_reworded(chance, answers):
    answers["remark"] = answers["remark"].replace("items", "questions").replace("respondent", "resp.").capitalize()


MISTAKES = (
    [transposed_digits] * 7
    + [key_beside] * 7
    + [other_code] * 3
    + [neighbouring_answer] * 5
    + [skipped_item] * 4
    + [shifted_items] * 3
    + [misspelt_town] * 4
    + [trailing_blank] * 2
    + [day_and_month_swapped] * 3
    + [decimal_point_slipped] * 2
    + [remark_left_out] * 2
    + [remark_reworded] * 2
)


def main():
    chance = random.Random(20260302)
    truth = [questionnaire(chance, number) for number in range(1, QUESTIONNAIRES + 1)]
    entries = [[dict(answers) for answers in truth] for _ in range(2)]

    rows = list(range(QUESTIONNAIRES))
    chance.shuffle(rows)
    for mistake in MISTAKES:
        changed = None
        while changed is None:
            row = rows.pop()
            entry = chance.choice(entries)
            mistake(chance, entry[row])
            changed = row if entry[row] != truth[row] else None

    folder = pathlib.Path(__file__).resolve().parents[1] / "examples"
    for number, entry in enumerate(entries, 1):
        missed = {rows.pop() for _ in range(MISSED_BY_EACH)}
        with open(folder / f"entry{number}.csv", "w", newline="", encoding="utf-8") as out:
            writer = csv.DictWriter(out, VARIABLES, lineterminator="\n")
            writer.writeheader()
            writer.writerows(answers for row, answers in enumerate(entry) if row not in missed)


if __name__ == "__main__":
    main()
