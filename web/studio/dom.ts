// Elements without a framework. Texts are always texts: nothing here parses markup.

type Child = Node | string | number | null | undefined | false | readonly Child[];
type Property = string | number | boolean | null | undefined | ((event: never) => void);

function append(parent: Node, child: Child): void {
  if (child === null || child === undefined || child === false) return;
  if (Array.isArray(child)) {
    for (const each of child as readonly Child[]) append(parent, each);
  } else {
    parent.appendChild(child instanceof Node ? child : document.createTextNode(String(child as string | number)));
  }
}

/** An element with attributes; those whose names begin with "on" are listeners. */
export function h<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  properties: Record<string, Property> = {},
  ...children: Child[]
): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (typeof value === "function") {
      element.addEventListener(name.slice(2), value as (event: Event) => void);
    } else if (value !== undefined && value !== null && value !== false) {
      element.setAttribute(name, value === true ? "" : String(value));
    }
  }
  append(element, children);
  return element;
}

/** Puts other children in the place of an element's own. */
export function fill(element: Element, ...children: Child[]): void {
  element.replaceChildren();
  append(element, children);
}

const SHAPES = {
  eye: "M1 8s2.5-4.5 7-4.5S15 8 15 8s-2.5 4.5-7 4.5S1 8 1 8zm7 2a2 2 0 1 0 0-4 2 2 0 0 0 0 4z",
  hidden: "M2 2l12 12M3.5 5.2C1.9 6.5 1 8 1 8s2.5 4.5 7 4.5c1.2 0 2.300-.3 3.200-.8M6.500 3.700C7 3.600 7.500 3.500 8 3.500c4.500 0 7 4.500 7 4.500s-.6 1-1.700 2.100",
  replay: "M3 8a5 5 0 1 0 1.500-3.500L3 6M3 2.500V6h3.500",
  remove: "M3.500 3.500l9 9M12.500 3.500l-9 9",
  search: "M7 12A5 5 0 1 0 7 2a5 5 0 0 0 0 10zM10.800 10.800L14 14",
  plus: "M8 3v10M3 8h10",
  open: "M1.500 12.500v-9h4l1.500 2h6.500v7z",
  save: "M8 2v8M4.500 7L8 10.500 11.500 7M2.500 13.500h11",
  table: "M2 3h12v10H2zM2 6.500h12M2 10h12M6 3v10",
  sun: "M8 5a3 3 0 1 0 0 6 3 3 0 0 0 0-6zM8 1v1.500M8 13.500V15M1 8h1.500M13.500 8H15M3 3l1 1M12 12l1 1M3 13l1-1M12 4l1-1",
  book: "M8 4c-1.500-1.200-3.500-1.500-6-1.500v10c2.500 0 4.500.3 6 1.500 1.500-1.200 3.500-1.500 6-1.500v-10C11.500 2.500 9.500 2.800 8 4zm0 0v10",
  paste: "M5 3H3v11h10V3h-2M5.500 1.500h5v3h-5z",
  play: "M4.500 2.500l8.500 5.500-8.500 5.500z",
  pause: "M5 3v10M11 3v10",
  step: "M3.500 3l6.500 5-6.500 5zM12.500 3v10",
  back: "M12.500 3L6 8l6.500 5zM3.500 3v10",
  copy: "M5.500 5.500h8v8h-8zM3 10.500H2.500v-8h8V3",
} as const;

export type Icon = keyof typeof SHAPES;

/** A drawing beside or in place of a button's text; screen readers pass over it. */
export function icon(name: Icon): SVGElement {
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("viewBox", "0 0 16 16");
  svg.setAttribute("class", "icon");
  svg.setAttribute("aria-hidden", "true");
  const path = document.createElementNS("http://www.w3.org/2000/svg", "path");
  path.setAttribute("d", SHAPES[name]);
  svg.appendChild(path);
  return svg;
}

/** The colour that a line is drawn in. */
export function swatch(colour: string): HTMLElement {
  const element = h("span", { class: "swatch", "aria-hidden": "true" });
  element.style.background = colour;
  return element;
}

/** Some of the numbers of a column, from all of it. */
export function* sampled(values: ArrayLike<number>): Iterable<number> {
  const step = Math.max(1, Math.floor(values.length / 1000));
  for (let i = 0; i < values.length; i += step) if (Number.isFinite(values[i])) yield values[i]!;
}

/** The largest size of a column's numbers. */
export function sizeOf(values: ArrayLike<number>): number {
  let size = 0;
  for (const value of sampled(values)) size = Math.max(size, Math.abs(value));
  return size;
}

const MOST_DECIMALS = 4;

/** What a column's numbers are written by as people read them: as many decimals in each, and no more than tell something. */
export function writerOf(values: ArrayLike<number>): (value: number) => string {
  let decimals = 0;
  for (const value of sampled(values)) {
    while (decimals < MOST_DECIMALS && Number(value.toFixed(decimals)) !== value) ++decimals;
  }
  const size = sizeOf(values);
  if (decimals === MOST_DECIMALS && size > 0 && size < 1) decimals = Math.min(10, MOST_DECIMALS - Math.floor(Math.log10(size)) - 1);
  const format = new Intl.NumberFormat("en-US", { minimumFractionDigits: decimals, maximumFractionDigits: decimals });
  return (value) => {
    if (!Number.isFinite(value)) return "–";
    return Math.abs(value) >= 1e15 || (value !== 0 && Math.abs(value) < 1e-9) ? value.toExponential(4) : format.format(value);
  };
}
