// Reads every main script, script, pattern and type of the examples and of the standard script by its grammar. All of
// them run, so none may hold a place marked as illegal, every command must be closed where it was opened, and each file
// must end in the state in which it began. Every built-in that the program knows must be told from other names.
import fs from "node:fs";
import path from "node:path";
import { createRequire } from "node:module";
import { fileURLToPath } from "node:url";

const here = path.dirname(fileURLToPath(import.meta.url));
// The folder with node_modules is the working directory.
const require = createRequire(path.join(process.cwd(), "package.json"));
const oniguruma = require("vscode-oniguruma");
const textmate = require("vscode-textmate");

const extension = path.resolve(here, "..");
const root = process.env.KVL_ROOT ?? path.resolve(extension, "../..");
const contributes = JSON.parse(fs.readFileSync(path.join(extension, "package.json"), "utf8")).contributes;
const grammarFiles = Object.fromEntries(contributes.grammars.map((g) => [g.scopeName, path.join(extension, g.path)]));
const scopeOfEnding = {};
for (const language of contributes.languages) {
  const grammar = contributes.grammars.find((g) => g.language === language.id);
  for (const ending of language.extensions) scopeOfEnding[ending] = grammar.scopeName;
}

const wasm = fs.readFileSync(require.resolve("vscode-oniguruma/release/onig.wasm"));
await oniguruma.loadWASM(wasm.buffer.slice(wasm.byteOffset, wasm.byteOffset + wasm.byteLength));
const registry = new textmate.Registry({
  onigLib: Promise.resolve({
    createOnigScanner: (patterns) => new oniguruma.OnigScanner(patterns),
    createOnigString: (text) => new oniguruma.OnigString(text),
  }),
  loadGrammar: async (scope) =>
    textmate.parseRawGrammar(fs.readFileSync(grammarFiles[scope], "utf8"), grammarFiles[scope]),
});

function sources(folder) {
  return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const file = path.join(folder, entry.name);
    if (entry.isDirectory()) return ["expected", "out"].includes(entry.name) ? [] : sources(file);
    return path.extname(file) in scopeOfEnding && fs.statSync(file).size > 0 ? [file] : [];
  });
}

let faults = 0;
function fault(file, line, text) {
  faults += 1;
  console.error(`${path.relative(root, file)}:${line}: ${text}`);
}

const files = ["examples", "standard"].flatMap((folder) => sources(path.join(root, folder)));
for (const file of files) {
  const grammar = await registry.loadGrammar(scopeOfEnding[path.extname(file)]);
  let state = textmate.INITIAL;
  const lines = fs.readFileSync(file, "latin1").split(/\r?\n/);
  lines.forEach((line, index) => {
    const result = grammar.tokenizeLine(line, state);
    let open = 0;
    for (const token of result.tokens) {
      const scopes = token.scopes.join(" ");
      const text = line.slice(token.startIndex, token.endIndex);
      if (scopes.includes("invalid.")) fault(file, index + 1, `illegal: ${text}`);
      if (scopes.includes("punctuation.section.command.begin")) open += 1;
      if (scopes.includes("punctuation.section.command.end")) open -= 1;
    }
    const inType = path.extname(file) === ".type";
    if (open !== 0 && !inType) fault(file, index + 1, "a command is left open");
    state = result.ruleStack;
  });
  if (state.depth !== 1) fault(file, lines.length, "the file ends inside something");
}
const builtIns = path.join(root, "src/frontend/CommandRows.def");
const script = await registry.loadGrammar("source.kvl");
fs.readFileSync(builtIns, "utf8").split("\n").forEach((line, index) => {
  const name = line.match(/^KVL_COMMAND\(.*, "([A-Z_:0-9]+)"\)$/)?.[1];
  if (!name) return;
  const call = name.includes(":") || name === "DUMP" ? `$${name}(X)$` : `$D:${name}(X)$`;
  const { tokens } = script.tokenizeLine(call, textmate.INITIAL);
  const known = tokens.some((token) => token.scopes.some((scope) => /^support\.function\./.test(scope)));
  if (!known) fault(builtIns, index + 1, `the grammar does not know ${name}`);
});
if (files.length < 10) throw new Error(`only ${files.length} sources found below ${root}`);
if (faults > 0) process.exit(1);
console.log(`${files.length} sources of the examples read without a fault`);
