// Counts to 10 and starts again. The assertion fails when the count gets to 6.
module counter(input clk, input up);
  reg [3:0] count = 0;
  always @(posedge clk)
    if (up) count <= count == 10 ? 0 : count + 1;
  always @(posedge clk) assert (count < 6);
endmodule
