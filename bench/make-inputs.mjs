// node bench/make-inputs.mjs DIR: writes the synthetic benchmark inputs into
// DIR: a ~5 MB stylesheet of varied rulesets, and 1 MB made of nothing but
// braces, in runs that leave the depth both positive and negative.
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const dir = process.argv[2];
mkdirSync(dir, { recursive: true });

let seed = 12345;
const random = (n) => {
    seed = (seed * 1103515245 + 12345) % 2147483648;
    return seed % n;
};
const pick = (list) => list[random(list.length)];

const selectors = ['.card', '#main', 'a:hover', 'ul > li', '.btn-primary:focus-visible',
    'input[type="text"]', '.nav .item + .item', ':root', 'h1, h2, h3', '.grid__cell--wide'];
const declarations = [
    () => `color: #${random(0xffffff).toString(16).padStart(6, '0')}`,
    () => `background-color: rgba(${random(256)}, ${random(256)}, ${random(256)}, 0.${random(10)})`,
    () => `border-radius: ${random(24)}px`,
    () => `border: 1px ${pick(['solid', 'dashed', 'dotted'])} var(--line-${random(20)})`,
    () => `margin: ${random(4)}rem ${random(4)}rem`,
    () => `font-weight: ${pick(['400', '700', 'bold', 'normal', '300'])}`,
    () => `--space-${random(50)}: calc(${random(9)}px + 0.${random(10)}rem)`,
    () => `background: linear-gradient(${random(360)}deg, #fff 0%, #${random(0xfff).toString(16)} 100%)`,
    () => `transition: all 0.${random(10)}s ease-in-out`,
    () => `font-family: "Helvetica Neue", Arial, sans-serif`,
];

const parts = [];
let size = 0;
let index = 0;
while (size < 5 * 1024 * 1024) {
    const lines = [];
    if (random(8) === 0)
        lines.push(`/* section ${index} */`);
    lines.push(`${pick(selectors)}-${index++} {`);
    const count = 1 + random(8);
    for (let i = 0; i < count; ++i)
        lines.push(`  ${pick(declarations)()};`);
    lines.push('}');
    if (random(40) === 0)
        lines.push(`@media (max-width: ${random(1200)}px) { .x-${index} { display: none } }`);
    const block = lines.join('\n') + '\n\n';
    parts.push(block);
    size += block.length;
}
writeFileSync(join(dir, 'generated-5mb.css'), parts.join(''));

const braces = [];
let length = 0;
while (length < 1024 * 1024) {
    const run = 1 + random(64);
    const brace = random(2) === 0 ? '{' : '}';
    braces.push(brace.repeat(run));
    length += run;
}
writeFileSync(join(dir, 'braces-1mb.css'), braces.join('').slice(0, 1024 * 1024));
