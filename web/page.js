'use strict';
// The page converts nothing itself: it runs the commands of the tool. Keys and buttons add frames or
// beats to a count, which the tool then parses. Dragging the ruler adds samples to the position.

const find = selector => document.querySelector(selector);
const fields = find('form').elements;
const ruler = find('#ruler');
const settings = ['rate', 'fps', 'tempo', 'meter', 'ticks', 'offset_ms'];
// Shapes of typed texts, and the formats to try for each. The first format that parses is taken.
const shapes = [
  [/;/, ['smpte-drop']],
  [/:.*:.*:/, ['smpte']],
  [/^\s*[-+]?\d*\s*$/, ['samples']],
  [/^[^:]*:\d(\.\d*)?\s*$/, ['bars-beats']],
  [/./, ['decimal', 'smpte', 'bars-beats', 'beats', 'milliseconds']],
];
const rateNames = new Map();  // from names such as 29.97df to {format, fps}
let output, errors;  // lines of a command
let module;
let answer;  // what the tool shows, and the format that was taken; undefined after an error

function run(...words) {
  [output, errors] = [[], []];
  const stack = module.stackSave();
  const status = module.callMain(words);
  module.stackRestore(stack);
  const error = errors.map(line => line.replace('mezzo: ', '')).join('\n');
  return {text: output.join('\n'), error: status === 0 ? '' : error};
}

function options(format) {
  return settings.filter(name => fields[name].value && !(name === 'fps' && rateNames.has(format)))
      .flatMap(name => ['--' + name.replace('_', '-'), fields[name].value]);
}

function show(format, text, taken = format) {
  const shown = run('show', '--json', '--from', format, ...options(format), '--', text);
  return shown.error ? shown : {...JSON.parse(shown.text), taken};
}

function readTyped() {
  const text = fields.text.value;
  const chosen = fields.format.value;
  const formats = chosen ? [chosen] : shapes.find(([shape]) => shape.test(text))[1];
  const shown = formats.map(format => show(format, text));
  return shown.find(({error}) => !error) ?? shown[0];
}

// After a move by keys or on the ruler, the position is kept as a sample count. The field shows it in
// the format that was typed.
function readMoved() {
  const [position, format] = [fields.moved_to.value, fields.moved_format.value];
  const shown = show('samples', position, format);
  if (shown.error) return shown;
  const name = formatNameOf(format);
  const text = shown.formats.find(format => format.name === name)?.text?.trim() ?? '';
  fields.text.value = text;
  const {text: sample} = run('parse', format, ...options(format), '--', text);
  const notes =
      sample && sample !== position ? [`'${text}' reads back as sample ${sample}`] : [];
  return {...shown, notes};
}

function update() {
  const result = fields.moved_to.value ? readMoved() : readTyped();
  answer = result.error ? undefined : result;
  find('#error').textContent = result.error ?? '';
  if (rateNames.has(answer?.taken)) fields.fps.value = answer.fps;
  showAnswer();
  drawRuler();
  const address = '#' + new URLSearchParams(new FormData(find('form')));
  clearTimeout(update.timer);  // a drag would change the address more often than browsers allow
  update.timer = setTimeout(() => history.replaceState(null, '', address), 200);
}

const formatNameOf = name => rateNames.get(name)?.format ?? name;
const findShown = name => answer?.formats.find(format => format.name === name);

function showAnswer() {
  const format = formatNameOf(answer?.taken);
  const names = [...rateNames.keys()].filter(
      name => rateNames.get(name).format === format && rateNames.get(name).fps === answer.fps);
  find('#answer').textContent =
      answer ? `Read as ${[format, ...names].join(', ')}: sample ${findShown('samples').text}` : '';
  find('#notes').textContent = answer?.notes?.join('; ') ?? '';
  for (const row of find('#displays').children) {
    const {text, notes} = findShown(row.dataset.format) ?? {};
    row.querySelector('samp').textContent = text ?? '';
    row.querySelector('small').textContent = notes?.join('; ') ?? '';
    row.querySelector('button').disabled = !text;
    row.classList.toggle('taken', row.dataset.format === format);
  }
}

function drawRuler() {
  if (!answer) return ruler.replaceChildren();
  const position = BigInt(findShown('samples').text);
  const half = BigInt(fields.span.value) / 2n;
  const [from, to] = [position - half, position + half];
  // The picture has margins of 24 pixels and columns of 8.
  const columns = Math.max(20, Math.floor((ruler.clientWidth - 48) / 8));
  const drawn = run('ruler', '--svg', '-', '--format', answer.taken, ...options(answer.taken),
                    '--from', `@${from}`, '--to', `@${to}`, '--width', String(columns));
  ruler.innerHTML = drawn.text;
  if (drawn.error) ruler.textContent = drawn.error;
  const said = {valuemin: from, valuenow: position, valuemax: to, valuetext: fields.text.value};
  for (const name in said) ruler.setAttribute('aria-' + name, said[name]);
}

function followAddress() {
  for (const [name, value] of new URLSearchParams(location.hash.slice(1))) {
    if (fields[name]) fields[name].value = value;
  }
  update();
}

// Moves to the position of a text in any format.
function move(format, text) {
  const moved = run('parse', format, ...options(format), '--', text);
  find('#error').textContent = moved.error;
  if (moved.error) return;
  fields.moved_to.value = moved.text;
  fields.moved_format.value = answer.taken;
  update();
}

function step(unit, by) {
  const format = formatNameOf(answer?.taken);
  const frames = /pulldown|drop/.test(format) ? 'pulldown-frames' : 'frames';
  const counted = unit === 'beat' ? 'bars-beats' : frames;
  const text = findShown(counted)?.text;
  if (!text) return;
  const [, bar, count, ticks] = /^(.*:)?(-?\d+)(.*)$/.exec(text);
  const increment = by * (unit === 'second' ? answer.fps : 1);
  move(counted, `${bar ?? ''}${Number(count) + increment}${ticks}`);
}

function scaleSpan(factor) {
  fields.span.value *= factor;
  update();
}

function copy(text) {
  navigator.clipboard.writeText(text).then(() => `Copied ${text}`, String)
      .then(said => find('#copied').textContent = said);
}

function fillPage() {
  const listed = run('formats').text.matchAll(/^([\d.]+d?f?) +(\S+) +--fps (\d+)$/gm);
  for (const [, name, format, fps] of listed) rateNames.set(name, {format, fps: Number(fps)});
  const formats = JSON.parse(run('formats', '--json').text)
      .filter(({text, meaning}) => text && !meaning.startsWith('same as'));
  fields.format.innerHTML += `<optgroup label="Frame rates">${
    [...rateNames].map(([name, {format}]) => `<option value="${name}">${name} – ${format}`).join('')
  }</optgroup><optgroup label="Formats">${
    formats.map(({name, meaning}) => `<option value="${name}">${name} – ${meaning}`).join('')}`;
  find('#displays').innerHTML = formats.map(({name, meaning}) =>
    `<li data-format="${name}"><button><span>${meaning}</span> <code>${name}</code>
     <samp></samp> <small></small></button>`).join('');
  find('#steps').innerHTML = ['frame', 'second', 'beat', 'zoom'].map(unit =>
    `<span><button name="${unit}" value="-1" aria-label="${unit} −">−</button> ${unit}
     <button name="${unit}" value="1" aria-label="${unit} +">+</button></span>`).join('');
  const defaults = JSON.parse(run('show', '--json', '0').text);
  for (const name of settings) fields[name].value = defaults[name];
  find('#version').textContent = run('--version').text;
}

function listen() {
  const on = (target, types, listener, options) =>
    types.split(' ').forEach(type => target.addEventListener(type, listener, options));
  on(find('form'), 'submit', event => event.preventDefault());
  on(find('form'), 'input', ({target}) => {
    if (target.name === 'fps') {  // a rate name, if selected, would override it
      for (const field of [fields.format, fields.moved_format]) field.value = formatNameOf(field.value);
    }
    if (/text|format/.test(target.name)) fields.moved_to.value = '';
    update();
  });
  on(find('#displays'), 'click', ({target}) => {
    const button = target.closest('button');
    if (button) copy(button.querySelector('samp').textContent);
  });
  on(find('#steps'), 'click', ({target: {name, value}}) => {
    if (name === 'zoom') scaleSpan(2 ** -value);
    else if (name) step(name, Number(value));
  });
  const directions = {ArrowUp: 1, ArrowDown: -1, ArrowRight: 1, ArrowLeft: -1};
  on(find('main'), 'keydown', event => {
    const isOnRuler = event.target === ruler;
    const isHorizontal = /Left|Right/.test(event.key);
    if (isOnRuler && /^[-+]$/.test(event.key)) scaleSpan(event.key === '+' ? 0.5 : 2);
    if (!directions[event.key] || !(isOnRuler || event.target === fields.text && !isHorizontal)) return;
    event.preventDefault();
    step(event.shiftKey ? 'second' : event.altKey ? 'beat' : 'frame', directions[event.key]);
  });
  let start;  // of a drag
  on(ruler, 'pointerdown', ({pointerId, clientX}) => {
    ruler.setPointerCapture(pointerId);
    start = answer && {clientX, position: BigInt(findShown('samples').text)};
  });
  on(ruler, 'pointermove', ({clientX}) => {
    if (!start || !answer) return;
    // The first and the last position lie in the middle of their columns. The distance between them
    // is the ruler's width without the margins, 48 pixels, and without a column, 8 pixels.
    const share = (start.clientX - clientX) / (ruler.clientWidth - 48 - 8);
    move('samples', String(start.position + BigInt(Math.round(share * fields.span.value))));
  });
  on(ruler, 'pointerup pointercancel', () => start = undefined);
  on(ruler, 'wheel', event => {
    if (!event.ctrlKey && document.activeElement !== ruler) return;  // the page scrolls
    event.preventDefault();
    scaleSpan(2 ** (Math.sign(event.deltaY) / 4));
  }, {passive: false});
  on(window, 'hashchange', followAddress);
  on(window, 'resize', update);
}

loadMezzo({
  print: line => output.push(line),
  printErr: line => errors.push(line),
}).then(loaded => {
  module = loaded;
  fillPage();
  listen();
  followAddress();
  fields.text.select();
});
