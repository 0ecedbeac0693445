import type { Theme } from "./chart.js";

/** Colours that are told apart by everybody, and stand out from the ground by 3 to 1 at least. */
export const DARK: Theme = {
  background: "#10151c",
  text: "#aab4c0",
  grid: "#1a212b",
  border: "#2b3542",
  up: "#26a69a",
  down: "#ef5350",
  line: "#4ea1ff",
  guide: "#6b7a8c",
  palette: ["#f5b83d", "#4ea1ff", "#e377c2", "#7ed957", "#ff8a5c", "#9d8cff", "#4dd0e1", "#d9d96b"],
};

export const LIGHT: Theme = {
  background: "#ffffff",
  text: "#4a5663",
  grid: "#eef1f4",
  border: "#d5dbe2",
  up: "#0f8a7e",
  down: "#d6332f",
  line: "#1668c7",
  guide: "#7b8794",
  palette: ["#a86500", "#1668c7", "#b0338c", "#3c7d12", "#c4481a", "#5b46c9", "#00768a", "#6f6a00"],
};
