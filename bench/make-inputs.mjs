// node bench/make-inputs.mjs DIR: writes the synthetic benchmark inputs into
// DIR: a ~5 MB stylesheet of varied, valid rulesets shaped like a framework's
// (so that no parser is timed on its error path), and 1 MB made of nothing but
// braces, in runs that leave the depth both positive and negative.
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const dir = process.argv[2];
mkdirSync(dir, { recursive: true });

// mulberry32: fixed seed, so every run measures the same bytes.
let seed = 0x9e3779b9;
const random = (n) => {
    seed = (seed + 0x6d2b79f5) | 0;
    let t = Math.imul(seed ^ (seed >>> 15), 1 | seed);
    t = (t + Math.imul(t ^ (t >>> 7), 61 | t)) ^ t;
    return ((t ^ (t >>> 14)) >>> 0) % n;
};
const pick = (list) => list[random(list.length)];
const hex = () => `#${random(0x1000000).toString(16).padStart(6, '0')}`;
const length = () => pick(['0', `${random(48)}px`, `${random(8)}.${random(10)}rem`, `${random(100)}%`,
    `${random(4)}em`]);

const blocks = ['card', 'btn', 'nav', 'modal', 'form', 'table', 'alert', 'badge', 'grid', 'menu'];
const selectors = [
    (b, i) => `.${b}-${i}`,
    (b, i) => `.${b}-${i} .${b}__title`,
    (b, i) => `.${b}-${i} > li:hover`,
    (b, i) => `.${b}-${i}:focus-visible`,
    (b, i) => `.${b}-${i} input[type="text"]`,
    (b, i) => `#${b}-${i} h1,\n#${b}-${i} h2`,
    (b, i) => `.${b}-${i}::before`,
    (b, i) => `.${b}--${pick(['primary', 'secondary', 'large', 'small'])}-${i}:not(:disabled)`,
];
const declarations = [
    () => `color: ${hex()}`,
    () => `background-color: rgba(${random(256)}, ${random(256)}, ${random(256)}, 0.${random(10)})`,
    () => `border-radius: ${length()}`,
    () => `border: 1px ${pick(['solid', 'dashed', 'dotted'])} var(--line-${random(20)})`,
    () => `margin: ${length()} ${length()}`,
    () => `padding: ${length()} ${length()} ${length()}`,
    () => `font-weight: ${pick(['400', '700', 'bold', 'normal', '300'])}`,
    () => `font-size: ${length()}`,
    () => `line-height: 1.${random(10)}`,
    () => `display: ${pick(['block', 'flex', 'inline-block', 'grid', 'none'])}`,
    () => `--space-${random(50)}: calc(${random(9)}px + 0.${random(10)}rem)`,
    () => `background: linear-gradient(${random(360)}deg, #fff 0%, ${hex()} 100%)`,
    () => `transition: ${pick(['color', 'opacity', 'transform'])} 0.${random(10)}s ease-in-out`,
    () => `font-family: "Helvetica Neue", Arial, sans-serif`,
    () => `box-shadow: 0 ${random(8)}px ${random(24)}px rgba(0, 0, 0, 0.${random(10)})`,
    () => `transform: translate(${random(100)}px, -${random(100)}%) rotate(${random(360)}deg)`,
    () => `z-index: ${random(1000)}`,
    () => `opacity: 0.${random(10)}`,
    () => `grid-template-columns: repeat(${1 + random(12)}, minmax(0, 1fr))`,
    () => `width: calc(100% - ${length()}) !important`,
];

const ruleset = (index, indent) => {
    const lines = [`${indent}${pick(selectors)(pick(blocks), index)} {`];
    const count = 1 + random(8);
    for (let i = 0; i < count; ++i)
        lines.push(`${indent}  ${pick(declarations)()};`);
    lines.push(`${indent}}`);
    return lines.join('\n');
};

const parts = [];
let size = 0;
let index = 0;
while (size < 5 * 1024 * 1024) {
    let block;
    const kind = random(40);
    if (kind === 0)
        block = `@media (max-width: ${320 + random(1200)}px) {\n${ruleset(index++, '  ')}\n${ruleset(index++, '  ')}\n}`;
    else if (kind === 1)
        block = `/* ${pick(blocks)} ${index} */\n${ruleset(index++, '')}`;
    else
        block = ruleset(index++, '');
    block += '\n\n';
    parts.push(block);
    size += block.length;
}
writeFileSync(join(dir, 'generated-5mb.css'), parts.join(''));

const braces = [];
let count = 0;
while (count < 1024 * 1024) {
    const run = 1 + random(64);
    const brace = random(2) === 0 ? '{' : '}';
    braces.push(brace.repeat(run));
    count += run;
}
writeFileSync(join(dir, 'braces-1mb.css'), braces.join('').slice(0, 1024 * 1024));
